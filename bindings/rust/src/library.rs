use crate::answer::{read_json, whole_text};
use crate::exports::Exports;
use crate::focus_watch::{self, FocusWatch};
use crate::input::{c_path, c_wide, find_query, FindRequest};
use crate::{Application, Details, Error, FocusChange, Game};
use serde::de::DeserializeOwned;
use std::ffi::CString;
use std::ops::ControlFlow;
use std::os::raw::{c_char, c_int};
use std::path::Path;
use std::sync::Arc;
use std::time::Duration;

/// A loaded `Tarnwick.dll`. Clones share it, and it may be used from any thread.
///
/// It is unloaded when the last clone is dropped and no [`FocusWatch`] is left; see [the crate](crate#unloading).
#[derive(Clone)]
pub struct Library {
    exports: Arc<Exports>,
}

impl std::fmt::Debug for Library {
    fn fmt(&self, f: &mut std::fmt::Formatter<'_>) -> std::fmt::Result {
        f.debug_struct("Library").finish_non_exhaustive()
    }
}

impl Library {
    /// Loads the DLL from an absolute path, such as that of the host's own folder:
    ///
    /// ```no_run
    /// # fn main() -> Result<(), Box<dyn std::error::Error>> {
    /// let path = std::env::current_exe()?.with_file_name("Tarnwick.dll");
    /// let library = tarnwick::Library::load(path)?;
    /// # Ok(())
    /// # }
    /// ```
    ///
    /// It is never searched for, in PATH or in the current directory, where anybody may have put another one.
    ///
    /// # Errors
    ///
    /// [`PathNotAbsolute`](Error::PathNotAbsolute), [`DllMissing`](Error::DllMissing),
    /// [`WrongBitness`](Error::WrongBitness), [`ExportMissing`](Error::ExportMissing), and
    /// [`NotLoaded`](Error::NotLoaded) for all else that the system may object to.
    pub fn load(path: impl AsRef<Path>) -> Result<Library, Error> {
        Ok(Library { exports: Arc::new(Exports::load(path.as_ref())?) })
    }

    /// Finds the catalogue's games on this machine, and what the launchers hold.
    ///
    /// Without a catalogue, `MasterGameList_decrypted.xml` in the current directory is taken. Where there is no such file,
    /// or none at the path that is given, `MasterGameList.xml` in the current directory takes its place. No catalogue at
    /// all gives an empty list.
    ///
    /// Takes seconds, or minutes on a slow disk.
    ///
    /// # Errors
    ///
    /// [`InvalidInput`](Error::InvalidInput) for a path that holds a zero character or is no Unicode text, and
    /// [`AnswerCut`](Error::AnswerCut), [`NotUtf8`](Error::NotUtf8) or [`InvalidJson`](Error::InvalidJson) for an answer
    /// that can't be read.
    pub fn scan(&self, catalogue: Option<&Path>) -> Result<Vec<Game>, Error> {
        let path = catalogue.map(|path| c_path(path, "catalogue")).transpose()?;
        let c_path = path.as_ref().map_or(std::ptr::null(), |path| path.as_ptr());
        // SAFETY: the path is null or a text that outlives the call.
        list("IA_RunMultiPlatformGameScanJson", |buffer, size| unsafe { (self.exports.scan)(c_path, buffer, size) })
    }

    /// Writes what a scan of `MasterGameList.xml` in the current directory finds to the debug output
    /// (`OutputDebugString`), as a report for people. Takes as long as a scan.
    pub fn report(&self) {
        // SAFETY: it takes nothing.
        unsafe { (self.exports.report)() }
    }

    /// What can be shown for one executable, without a scan; nothing if there is no such file.
    ///
    /// # Errors
    ///
    /// As of [`scan`](Library::scan).
    pub fn game_details(&self, path: impl AsRef<Path>) -> Result<Option<Details>, Error> {
        const EXPORT: &str = "IA_GetGameDetailsByPathJson";
        let answer = ask_with(EXPORT, self.exports.game_details, &c_path(path.as_ref(), "path")?)?;
        if answer == "{}" {
            return Ok(None);
        }
        read_json(EXPORT, &answer).map(Some)
    }

    /// Reads the list of installed applications anew, which the calls below otherwise read once in the life of a process.
    /// Returns how many there are, before any filter; 0 after a failure as well.
    pub fn refresh(&self) -> usize {
        // SAFETY: it takes nothing.
        usize::try_from(unsafe { (self.exports.refresh)() }).unwrap_or(0)
    }

    /// One page of the installed applications. `page` counts from 1, and 0 means 1; a `page_size` of 0 means 20. A page
    /// behind the end is empty. The filter keeps the applications whose name or publisher contains it, without regard to
    /// case; without one, all are kept.
    ///
    /// # Errors
    ///
    /// [`InvalidInput`](Error::InvalidInput) for a filter that holds a zero character; otherwise as of
    /// [`scan`](Library::scan).
    pub fn applications(&self, page: u32, page_size: u32, filter: Option<&str>) -> Result<Vec<Application>, Error> {
        let filter = c_wide(filter.unwrap_or(""), "filter")?;
        let (page, page_size) = (saturated(page), saturated(page_size));
        // SAFETY: the filter is a text that outlives the call.
        list("IA_GetAppsJson", |buffer, size| unsafe {
            (self.exports.applications)(page, page_size, filter.as_ptr(), buffer, size)
        })
    }

    /// All installed applications, with the filter of [`applications`](Library::applications). Loads every icon.
    ///
    /// # Errors
    ///
    /// As of [`applications`](Library::applications).
    pub fn all_applications(&self, filter: Option<&str>) -> Result<Vec<Application>, Error> {
        let filter = c_wide(filter.unwrap_or(""), "filter")?;
        // SAFETY: the filter is a text that outlives the call.
        list("IA_GetAppsJsonAll", |buffer, size| unsafe {
            (self.exports.all_applications)(filter.as_ptr(), buffer, size)
        })
    }

    /// Looks games up among the installed applications. Each request, in order, gives the first application whose install
    /// folder holds the executable, or nothing.
    ///
    /// ```no_run
    /// # fn main() -> Result<(), tarnwick::Error> {
    /// # let library = tarnwick::Library::load("C:\\Tarnwick.dll")?;
    /// use tarnwick::FindRequest;
    /// let request = FindRequest { exe_name: "foo.exe".into(), exe_path: "bin".into(), ..FindRequest::default() };
    /// let found = library.find_games(&[request])?;
    /// # Ok(())
    /// # }
    /// ```
    ///
    /// # Errors
    ///
    /// [`InvalidInput`](Error::InvalidInput) for a request without an executable, or with a character that the DLL can't
    /// read in one; otherwise as of [`scan`](Library::scan).
    pub fn find_games(&self, requests: &[FindRequest]) -> Result<Vec<Application>, Error> {
        const EXPORT: &str = "IA_FindGamesJson";
        read_json(EXPORT, &ask_with(EXPORT, self.exports.find_games, &find_query(requests)?)?)
    }

    /// [`find_games`](Library::find_games) with the requests in a JSON file. A file that is missing or empty gives
    /// nothing.
    ///
    /// # Errors
    ///
    /// As of [`scan`](Library::scan).
    pub fn find_games_in_file(&self, path: impl AsRef<Path>) -> Result<Vec<Application>, Error> {
        const EXPORT: &str = "IA_FindGamesByFile";
        let path = c_path(path.as_ref(), "path")?;
        read_json(EXPORT, &ask_with(EXPORT, self.exports.find_games_in_file, &path)?)
    }

    /// Looks at the foreground window once every interval, and calls the handler when the process that owns it has
    /// changed, first of all with the present one. An interval below 50 milliseconds means 200. Changes that come and go
    /// between two looks, or while the handler runs, go unseen.
    ///
    /// ```no_run
    /// # fn main() -> Result<(), tarnwick::Error> {
    /// # let library = tarnwick::Library::load("C:\\Tarnwick.dll")?;
    /// use std::{ops::ControlFlow, time::Duration};
    /// let watch = library.watch_focus(Duration::from_millis(200), |change| {
    ///     println!("{} {}", change.process_id, change.path);
    ///     ControlFlow::Continue(())
    /// })?;
    /// std::thread::sleep(Duration::from_secs(60));
    /// drop(watch); // stops it
    /// # Ok(())
    /// # }
    /// ```
    ///
    /// The handler is called on the watch's own thread, never by two threads at once, and may call the library. To end the
    /// watch from within, return [`ControlFlow::Break`]: the handler is dropped and not called again. The process's one
    /// watch is taken until the [`FocusWatch`] is dropped or stopped all the same; a handler may drop that too.
    ///
    /// A panic in the handler ends the watch in the same way and goes no further; [`FocusWatch::stop`] hands it out.
    ///
    /// The end of a watch waits for the handler that runs. So don't end it while you hold a lock that the handler takes, or
    /// on the thread that the handler waits for: both would wait for ever.
    ///
    /// # Errors
    ///
    /// [`WatchRunning`](Error::WatchRunning): a process has one watch at a time, whichever library it was started with.
    /// None can be started from within a handler.
    pub fn watch_focus(
        &self,
        interval: Duration,
        handler: impl FnMut(FocusChange) -> ControlFlow<()> + Send + 'static,
    ) -> Result<FocusWatch, Error> {
        let milliseconds = i32::try_from(interval.as_millis()).unwrap_or(i32::MAX);
        focus_watch::start(&self.exports, milliseconds, Box::new(handler))
    }
}

type AskWithText = unsafe extern "C" fn(*const c_char, *mut c_char, c_int) -> c_int;

fn ask_with(export: &'static str, function: AskWithText, text: &CString) -> Result<String, Error> {
    // SAFETY: the text outlives the call, and the buffer has the size that is given.
    whole_text(export, |buffer, size| unsafe { function(text.as_ptr(), buffer, size) })
}

fn list<T: DeserializeOwned>(
    export: &'static str,
    ask: impl FnMut(*mut c_char, c_int) -> c_int,
) -> Result<Vec<T>, Error> {
    read_json(export, &whole_text(export, ask)?)
}

fn saturated(number: u32) -> i32 {
    i32::try_from(number).unwrap_or(i32::MAX)
}
