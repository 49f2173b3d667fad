//! The eleven functions of tarnwick.h, and how they are found.

use crate::Error;
use std::os::raw::{c_char, c_int};
use std::path::{Path, PathBuf};

pub(crate) type FocusCallback = unsafe extern "C" fn(*const c_char, u32, *const c_char);

/// The functions stay valid as long as the library in here does, that is, as long as this.
pub(crate) struct Exports {
    pub scan: unsafe extern "C" fn(*const c_char, *mut c_char, c_int) -> c_int,
    pub report: unsafe extern "C" fn(),
    pub game_details: unsafe extern "C" fn(*const c_char, *mut c_char, c_int) -> c_int,
    pub refresh: unsafe extern "C" fn() -> i32,
    pub applications: unsafe extern "C" fn(i32, i32, *const u16, *mut c_char, i32) -> i32,
    pub all_applications: unsafe extern "C" fn(*const u16, *mut c_char, i32) -> i32,
    pub find_games: unsafe extern "C" fn(*const c_char, *mut c_char, i32) -> i32,
    pub find_games_in_file: unsafe extern "C" fn(*const c_char, *mut c_char, i32) -> i32,
    pub set_focus_callback: unsafe extern "C" fn(Option<FocusCallback>),
    pub start_focus_watch: unsafe extern "C" fn(i32),
    pub stop_focus_watch: unsafe extern "C" fn(),
    _library: libloading::Library,
}

impl Exports {
    pub fn load(path: &Path) -> Result<Exports, Error> {
        if !path.is_absolute() {
            return Err(Error::PathNotAbsolute { path: path.into() });
        }
        if !path.is_file() {
            return Err(Error::DllMissing { path: path.into() });
        }
        let library = open(path).map_err(|error| loading_error(path, &error))?;
        // SAFETY: these are the types of tarnwick.h.
        unsafe {
            Ok(Exports {
                scan: export(&library, path, "IA_RunMultiPlatformGameScanJson")?,
                report: export(&library, path, "RunMultiPlatformGameScan")?,
                game_details: export(&library, path, "IA_GetGameDetailsByPathJson")?,
                refresh: export(&library, path, "IA_RefreshCache")?,
                applications: export(&library, path, "IA_GetAppsJson")?,
                all_applications: export(&library, path, "IA_GetAppsJsonAll")?,
                find_games: export(&library, path, "IA_FindGamesJson")?,
                find_games_in_file: export(&library, path, "IA_FindGamesByFile")?,
                set_focus_callback: export(&library, path, "SetFocusCallbackEx")?,
                start_focus_watch: export(&library, path, "StartFocusWatch")?,
                stop_focus_watch: export(&library, path, "StopFocusWatch")?,
                _library: library,
            })
        }
    }
}

/// # Safety
/// `T` is the type of the function of that name.
unsafe fn export<T: Copy>(library: &libloading::Library, path: &Path, name: &'static str) -> Result<T, Error> {
    // SAFETY: the caller's.
    match unsafe { library.get::<T>(name.as_bytes()) } {
        Ok(symbol) => Ok(*symbol),
        Err(_) => Err(Error::ExportMissing { path: path.into(), export: name }),
    }
}

/// What the DLL needs is taken from its own folder and from the system's, never from the current directory or PATH.
#[cfg(windows)]
fn open(path: &Path) -> Result<libloading::Library, libloading::Error> {
    use libloading::os::windows::{Library, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR, LOAD_LIBRARY_SEARCH_SYSTEM32};
    // LoadLibraryEx wants backslashes, which is what the parts are put together with.
    let path: PathBuf = path.components().collect();
    let flags = LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32;
    // SAFETY: loading it runs the DLL's entry point, which does nothing that this program must see to.
    unsafe { Library::load_with_flags(path, flags) }.map(Into::into)
}

#[cfg(not(windows))]
fn open(path: &Path) -> Result<libloading::Library, libloading::Error> {
    // SAFETY: as on Windows.
    unsafe { libloading::Library::new(path) }
}

fn loading_error(path: &Path, error: &libloading::Error) -> Error {
    let path = PathBuf::from(path);
    // On Windows the reason stands in the source alone.
    let reason = std::error::Error::source(error).map_or_else(|| error.to_string(), ToString::to_string);
    if is_for_other_programs(error, &reason) {
        Error::WrongBitness { path }
    } else {
        Error::NotLoaded { path, reason }
    }
}

#[cfg(windows)]
fn is_for_other_programs(error: &libloading::Error, _reason: &str) -> bool {
    const ERROR_BAD_EXE_FORMAT: i32 = 193;
    std::error::Error::source(error)
        .and_then(|source| source.downcast_ref::<std::io::Error>())
        .map_or(false, |source| source.raw_os_error() == Some(ERROR_BAD_EXE_FORMAT))
}

#[cfg(not(windows))]
fn is_for_other_programs(_error: &libloading::Error, reason: &str) -> bool {
    ["wrong ELF class", "invalid ELF header", "file too short"].iter().any(|known| reason.contains(known))
}
