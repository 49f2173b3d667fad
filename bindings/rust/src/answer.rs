//! The DLL's answers, in buffers that grow.

use crate::Error;
use serde::de::DeserializeOwned;
use std::os::raw::{c_char, c_int};

const FIRST_SIZE: usize = 4 << 20;
const ATTEMPTS: usize = 4;

pub(crate) fn read_json<T: DeserializeOwned>(export: &'static str, text: &str) -> Result<T, Error> {
    serde_json::from_str(text).map_err(|source| Error::InvalidJson { export, source })
}

/// Asks until the whole text fits. `ask` takes a buffer and its size, and returns the length of the text.
pub(crate) fn whole_text(export: &'static str, ask: impl FnMut(*mut c_char, c_int) -> c_int) -> Result<String, Error> {
    let bytes = whole_bytes(export, ask)?;
    String::from_utf8(bytes).map_err(|error| Error::NotUtf8 { export, source: error.utf8_error() })
}

fn whole_bytes(export: &'static str, mut ask: impl FnMut(*mut c_char, c_int) -> c_int) -> Result<Vec<u8>, Error> {
    let mut size = FIRST_SIZE;
    let mut length = 0;
    for attempt in 1..=ATTEMPTS {
        let cut = Error::AnswerCut { export, attempts: attempt - 1, length };
        let c_size = c_int::try_from(size).map_err(|_| cut)?;
        let mut buffer = vec![0u8; size];
        length = usize::try_from(ask(buffer.as_mut_ptr().cast(), c_size)).unwrap_or(0);
        if length < size {
            buffer.truncate(length);
            return Ok(buffer);
        }
        size = length + 1;
    }
    Err(Error::AnswerCut { export, attempts: ATTEMPTS, length })
}
