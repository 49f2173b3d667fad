//! What is handed to the DLL: texts that C can hold.

use crate::Error;
use std::ffi::CString;
use std::path::Path;

/// A game to look up among the installed applications; see [`Library::find_games`](crate::Library::find_games).
///
/// The DLL's own reader knows no escapes, so no text may hold a double quote or a brace.
#[derive(Clone, Debug, Default, PartialEq, Eq, Hash)]
pub struct FindRequest {
    /// The name that the answer carries; empty for the installed application's own.
    pub name: String,
    /// File name of the game's executable. It must not be empty.
    pub exe_name: String,
    /// Folder below the install folder where the executable lies, or empty. The install folder itself is tried next.
    pub exe_path: String,
}

const HAS_NUL: &str = "holds a zero character, where the DLL would take it to end: leave that out";

fn c_text(text: &str, argument: &'static str) -> Result<CString, Error> {
    CString::new(text).map_err(|_| Error::InvalidInput { argument, reason: HAS_NUL })
}

pub(crate) fn c_path(path: &Path, argument: &'static str) -> Result<CString, Error> {
    let reason = "is no Unicode text, and the DLL takes none else: name the file by its short name, or move it";
    c_text(path.to_str().ok_or(Error::InvalidInput { argument, reason })?, argument)
}

/// UTF-16 with its terminating zero.
pub(crate) fn c_wide(text: &str, argument: &'static str) -> Result<Vec<u16>, Error> {
    if text.contains('\0') {
        return Err(Error::InvalidInput { argument, reason: HAS_NUL });
    }
    Ok(text.encode_utf16().chain([0]).collect())
}

/// The requests as IA_FindGamesJson reads them: values stand as they are, backslashes too. It takes the first text in
/// quotes that reads like a key for that key, so the name, which may be any, comes last.
pub(crate) fn find_query(requests: &[FindRequest]) -> Result<CString, Error> {
    let objects = requests.iter().map(query_object).collect::<Result<Vec<_>, _>>()?;
    c_text(&format!("[{}]", objects.join(",")), "a request")
}

fn query_object(request: &FindRequest) -> Result<String, Error> {
    let FindRequest { name, exe_name, exe_path } = request;
    let no = |argument, reason| Err(Error::InvalidInput { argument, reason });
    if exe_name.is_empty() {
        return no("exe_name", "is empty, and the DLL looks for nothing else: name the executable's file");
    }
    for (argument, text) in [("name", name), ("exe_name", exe_name), ("exe_path", exe_path)] {
        if text.contains(['"', '{', '}']) {
            return no(
                argument,
                "holds a double quote or a brace, which the DLL can't read in a request: leave it out",
            );
        }
    }
    Ok(format!(r#"{{"exeName":"{exe_name}","exePath":"{exe_path}","name":"{name}"}}"#))
}
