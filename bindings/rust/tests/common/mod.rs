//! The stand-in library, which bindings/stand-in/make-stand-in compiles into the folder TARNWICK_STAND_IN.

use std::path::{Path, PathBuf};
use tarnwick::Library;

pub fn stand_in_file(name: &str) -> PathBuf {
    let folder = std::env::var_os("TARNWICK_STAND_IN").expect("TARNWICK_STAND_IN names no folder");
    let file = if cfg!(windows) { format!("Tarnwick-{name}.dll") } else { format!("libtarnwick-{name}.so") };
    Path::new(&folder).join(file)
}

pub fn stand_in() -> Library {
    Library::load(stand_in_file("stand-in")).unwrap()
}
