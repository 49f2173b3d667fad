//! What becomes of files that are no such library, of answers that can't be read, and of arguments that can't be given.

mod common;

use common::{stand_in, stand_in_file};
use std::path::{Path, PathBuf};
use tarnwick::{Error, Library};

fn loading_error(path: &Path) -> Error {
    Library::load(path).expect_err("it must not load")
}

fn scan_error(catalogue: &str) -> Error {
    stand_in().scan(Some(Path::new(catalogue))).expect_err("it must not be read")
}

fn assert_says(error: &Error, parts: &[&str]) {
    let text = error.to_string();
    for part in parts {
        assert!(text.contains(part), "{part:?} isn't in {text:?}");
    }
}

/// A file in a folder of its own, which is there as long as this.
struct OddFile(PathBuf);

impl OddFile {
    fn new(name: &str, bytes: &[u8]) -> OddFile {
        let folder = std::env::temp_dir().join(format!("tarnwick-{}-{name}", std::process::id()));
        std::fs::create_dir_all(&folder).unwrap();
        let path = folder.join(name);
        std::fs::write(&path, bytes).unwrap();
        OddFile(path)
    }
}

impl Drop for OddFile {
    fn drop(&mut self) {
        std::fs::remove_dir_all(self.0.parent().unwrap()).unwrap();
    }
}

/// The stand-in as if it were built for another word size: its header says so.
fn of_another_word_size() -> Vec<u8> {
    let mut bytes = std::fs::read(stand_in_file("stand-in")).unwrap();
    if cfg!(windows) {
        let header = usize::from(u16::from_le_bytes([bytes[0x3C], bytes[0x3D]]));
        const I386: [u8; 2] = [0x4C, 0x01];
        bytes[header + 4..header + 6].copy_from_slice(&I386);
    } else {
        const CLASS_32: u8 = 1;
        bytes[4] = CLASS_32;
    }
    bytes
}

#[test]
fn a_relative_path_is_refused() {
    for path in ["Tarnwick.dll", "./Tarnwick.dll", ""] {
        let error = loading_error(Path::new(path));
        assert!(matches!(error, Error::PathNotAbsolute { .. }), "{error:?}");
        assert_says(&error, &["must be absolute"]);
    }
}

#[cfg(windows)]
#[test]
fn a_path_without_a_drive_is_not_absolute() {
    for path in ["\\Windows\\Tarnwick.dll", "C:Tarnwick.dll"] {
        assert!(matches!(loading_error(Path::new(path)), Error::PathNotAbsolute { .. }));
    }
}

#[cfg(windows)]
#[test]
fn slashes_do_for_backslashes() {
    let path = stand_in_file("stand-in").to_str().unwrap().replace('\\', "/");
    assert_eq!(Library::load(path).unwrap().refresh(), 3);
}

#[test]
fn a_missing_file_is_named() {
    let missing = stand_in_file("no-such");
    let error = loading_error(&missing);
    assert!(matches!(&error, Error::DllMissing { path } if *path == missing));
    assert_says(&error, &["there is no file", missing.to_str().unwrap(), "ship Tarnwick.dll"]);
    let folder = missing.parent().unwrap();
    assert!(matches!(loading_error(folder), Error::DllMissing { .. }));
}

#[test]
fn a_library_of_another_word_size_is_told() {
    let file = OddFile::new("other-word-size.dll", &of_another_word_size());
    let error = loading_error(&file.0);
    assert!(matches!(error, Error::WrongBitness { .. }), "{error:?}");
    assert_says(&error, &["no library for this 64-bit program (x86_64)", file.0.to_str().unwrap()]);
}

#[test]
fn a_file_that_is_no_library_is_told() {
    for bytes in [&b"neither one nor the other, and long enough to have a header of some kind; ".repeat(9)[..], b"MZ"] {
        let file = OddFile::new("no-library.dll", bytes);
        let error = loading_error(&file.0);
        assert!(matches!(error, Error::WrongBitness { .. }), "{error:?}");
    }
}

#[test]
fn a_missing_export_is_named() {
    let error = loading_error(&stand_in_file("missing-export"));
    assert!(matches!(error, Error::ExportMissing { export: "IA_RefreshCache", .. }), "{error:?}");
    assert_says(&error, &["has no function IA_RefreshCache", "version 0.1.0 or later"]);
}

#[test]
fn an_answer_that_keeps_growing_is_given_up_after_four_attempts() {
    let library = stand_in();
    let cuts = || library.scan(Some(Path::new("counts"))).unwrap()[0].name.clone();
    assert!(cuts().ends_with(" cuts=0"));
    let error = scan_error("cut");
    // The stand-in names 100 bytes more than it is given, and is given one more than it named.
    const LAST: usize = (4 << 20) + 4 * 100 + 3;
    assert!(matches!(error, Error::AnswerCut { attempts: 4, length: LAST, .. }), "{error:?}");
    assert_says(&error, &["IA_RunMultiPlatformGameScanJson", "4 times", "keeps growing"]);
    assert!(cuts().ends_with(" cuts=4"));
}

#[test]
fn invalid_json_is_told_with_its_cause() {
    let error = scan_error("invalid");
    assert!(matches!(error, Error::InvalidJson { .. }), "{error:?}");
    assert_says(&error, &["IA_RunMultiPlatformGameScanJson", "not the JSON", "column 9"]);
    assert!(std::error::Error::source(&error).unwrap().to_string().contains("EOF"));
}

#[test]
fn bytes_that_are_no_utf_8_are_told() {
    let error = scan_error("not-utf8");
    assert!(matches!(error, Error::NotUtf8 { .. }), "{error:?}");
    assert_says(&error, &["is no UTF-8", "index 10"]);
    assert!(std::error::Error::source(&error).is_some());
}

#[test]
fn a_zero_character_is_refused() {
    let library = stand_in();
    let errors = [
        library.scan(Some(Path::new("a\0b"))).unwrap_err(),
        library.game_details("a\0b").unwrap_err(),
        library.find_games_in_file("a\0b").unwrap_err(),
        library.applications(1, 20, Some("a\0b")).unwrap_err(),
        library.all_applications(Some("a\0b")).unwrap_err(),
    ];
    for (error, argument) in errors.iter().zip(["catalogue", "path", "path", "filter", "filter"]) {
        assert!(matches!(error, Error::InvalidInput { .. }), "{error:?}");
        assert_says(error, &[argument, "zero character"]);
    }
}

#[test]
fn a_path_that_is_no_unicode_is_refused() {
    let error = stand_in().scan(Some(&odd_path())).unwrap_err();
    assert!(matches!(error, Error::InvalidInput { argument: "catalogue", .. }), "{error:?}");
    assert_says(&error, &["no Unicode text"]);
}

#[cfg(windows)]
fn odd_path() -> PathBuf {
    use std::os::windows::ffi::OsStringExt;
    std::ffi::OsString::from_wide(&[0x43, 0x3A, 0x5C, 0xD800]).into()
}

#[cfg(unix)]
fn odd_path() -> PathBuf {
    use std::os::unix::ffi::OsStringExt;
    std::ffi::OsString::from_vec(vec![b'/', 0xFF]).into()
}

#[test]
fn errors_and_libraries_go_anywhere() {
    fn anywhere<T: Send + Sync + 'static>() {}
    anywhere::<Error>();
    anywhere::<Library>();
    anywhere::<tarnwick::FocusWatch>();
}
