use std::fmt;
use std::path::PathBuf;

/// What can go wrong. The texts say what to do about it.
///
/// The DLL itself has no error codes: a machine without games, a catalogue that isn't there and a failure within are all
/// an empty answer, and its debug output tells which.
#[derive(Debug)]
#[non_exhaustive]
pub enum Error {
    /// The path of the DLL isn't absolute, so that somebody else's DLL could be found in its place.
    PathNotAbsolute {
        /// The path as it was given.
        path: PathBuf,
    },
    /// There is no file at the path of the DLL.
    DllMissing {
        /// The path that was tried.
        path: PathBuf,
    },
    /// The file is a library for programs of another word size or processor, or no library at all.
    WrongBitness {
        /// The path that was tried.
        path: PathBuf,
    },
    /// The system refused to load the DLL.
    NotLoaded {
        /// The path that was tried.
        path: PathBuf,
        /// The system's own words.
        reason: String,
    },
    /// The DLL lacks a function: it is another library, or a Tarnwick of another version.
    ExportMissing {
        /// The path of the DLL.
        path: PathBuf,
        /// The function that it lacks.
        export: &'static str,
    },
    /// The answer was longer than the buffer each time that the buffer had been grown.
    AnswerCut {
        /// The function that answered.
        export: &'static str,
        /// How often it was asked.
        attempts: usize,
        /// The length in bytes that it named last.
        length: usize,
    },
    /// The answer is no UTF-8.
    NotUtf8 {
        /// The function that answered.
        export: &'static str,
        /// Where it ceases to be UTF-8.
        source: std::str::Utf8Error,
    },
    /// The answer is no JSON, or JSON of another shape.
    InvalidJson {
        /// The function that answered.
        export: &'static str,
        /// What is wrong, and where.
        source: serde_json::Error,
    },
    /// An argument that the DLL can't be given.
    InvalidInput {
        /// The argument.
        argument: &'static str,
        /// What is wrong with it.
        reason: &'static str,
    },
    /// A process has one focus watch at a time, and it isn't stopped yet.
    WatchRunning,
}

const WORD_SIZE: usize = usize::BITS as usize;

impl fmt::Display for Error {
    fn fmt(&self, f: &mut fmt::Formatter<'_>) -> fmt::Result {
        match self {
            Error::PathNotAbsolute { path } => write!(
                f,
                "the path of Tarnwick.dll must be absolute, and {} isn't: build it from the folder of the host's \
                 executable",
                path.display()
            ),
            Error::DllMissing { path } => write!(
                f,
                "there is no file {}: ship Tarnwick.dll with the host, and name the place where it lies",
                path.display()
            ),
            Error::WrongBitness { path } => write!(
                f,
                "{} is no library for this {WORD_SIZE}-bit program ({}): take the Tarnwick.dll that is built for it, or \
                 run tarnwick.exe as a process of its own",
                path.display(),
                std::env::consts::ARCH
            ),
            Error::NotLoaded { path, reason } => write!(
                f,
                "the system refused to load {}: {reason}. See whether the file is whole and whether a virus scanner \
                 holds it",
                path.display()
            ),
            Error::ExportMissing { path, export } => write!(
                f,
                "{} has no function {export}: it isn't the Tarnwick.dll that this binding is made for; take one of \
                 version {} or later",
                path.display(),
                env!("CARGO_PKG_VERSION")
            ),
            Error::AnswerCut { export, attempts, length } => write!(
                f,
                "the answer of {export} was longer than its buffer {attempts} times, {length} bytes at last: it keeps \
                 growing; try again when the machine is at rest"
            ),
            Error::NotUtf8 { export, source } => {
                write!(f, "the answer of {export} is no UTF-8 ({source}); report this as an error of the DLL")
            }
            Error::InvalidJson { export, source } => write!(
                f,
                "the answer of {export} is not the JSON that is expected ({source}); see whether DLL and binding are of \
                 one version, and report this if they are"
            ),
            Error::InvalidInput { argument, reason } => write!(f, "{argument} {reason}"),
            Error::WatchRunning => write!(
                f,
                "a focus watch runs in this process already, and there is one at a time: drop or stop it first, outside \
                 of its handler"
            ),
        }
    }
}

impl std::error::Error for Error {
    fn source(&self) -> Option<&(dyn std::error::Error + 'static)> {
        match self {
            Error::NotUtf8 { source, .. } => Some(source),
            Error::InvalidJson { source, .. } => Some(source),
            _ => None,
        }
    }
}
