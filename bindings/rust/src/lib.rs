//! Which games and applications are installed on this Windows desktop, and which process holds the foreground: a
//! binding of `Tarnwick.dll`, which is loaded at run time from the path that the host names.
//!
//! ```no_run
//! fn main() -> Result<(), tarnwick::Error> {
//!     let library = tarnwick::Library::load(r"C:\Program Files\My host\Tarnwick.dll")?;
//!     for game in library.scan(None)? {
//!         println!("{} {}", game.name, game.path);
//!     }
//!     Ok(())
//! }
//! ```
//!
//! # What blocks
//!
//! Every call is synchronous and has no time limit. A [scan](Library::scan) takes seconds, or minutes on a slow disk: run
//! it on a thread of its own. A [`Library`] may be cloned and used from several threads at once. The DLL runs one scan,
//! refresh or list of all applications at a time; the others wait.
//!
//! # Unloading
//!
//! The DLL is unloaded when the last clone of its [`Library`] is dropped and no [`FocusWatch`] is left. A call after that
//! can't be written, since it needs a library to be made on:
//!
//! ```compile_fail,E0382
//! fn main() -> Result<(), tarnwick::Error> {
//!     let library = tarnwick::Library::load(r"C:\Program Files\My host\Tarnwick.dll")?;
//!     drop(library);
//!     library.refresh();
//!     Ok(())
//! }
//! ```
//!
//! # Panics
//!
//! No panic of the host crosses the DLL; see [`Library::watch_focus`].

#![deny(missing_docs)]
#![deny(unsafe_op_in_unsafe_fn)]

mod answer;
mod error;
mod exports;
mod focus_watch;
mod input;
mod library;
mod results;

pub use error::Error;
pub use focus_watch::FocusWatch;
pub use input::FindRequest;
pub use library::Library;
pub use results::{Application, Details, FocusChange, Game};

#[cfg(doctest)]
#[doc = include_str!("../README.md")]
struct Readme;
