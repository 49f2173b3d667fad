//! The process's one focus watch. The DLL's callback takes nothing of the caller's, so what it needs is static.

use crate::exports::Exports;
use crate::{Error, FocusChange};
use std::any::Any;
use std::cell::Cell;
use std::ffi::CStr;
use std::ops::ControlFlow;
use std::os::raw::c_char;
use std::panic::{catch_unwind, AssertUnwindSafe};
use std::sync::atomic::{AtomicBool, Ordering};
use std::sync::{Arc, Mutex, MutexGuard, PoisonError};

pub(crate) type Handler = Box<dyn FnMut(FocusChange) -> ControlFlow<()> + Send>;

struct Watch {
    exports: Arc<Exports>,
    /// Taken out while it runs, so that nobody waits for it here; gone when the watch has ended.
    handler: Mutex<Option<Handler>>,
    panic: Mutex<Option<Box<dyn Any + Send>>>,
    /// The handler isn't called again.
    ended: AtomicBool,
    /// Its guard was dropped in the handler, which can't wait for its own thread: the next start does.
    abandoned: AtomicBool,
}

/// The watch that holds the process's place. Locked for moments alone.
static CURRENT: Mutex<Option<Arc<Watch>>> = Mutex::new(None);

/// Held over each start and stop of the DLL's, which come from one thread at a time. Whoever waits for the watch's thread
/// holds it, so the handler's thread takes it only where nobody can.
static CONTROL: Mutex<()> = Mutex::new(());

thread_local! {
    static IN_HANDLER: Cell<bool> = Cell::new(false);
}

/// Nothing that is locked here can be left half done by a panic.
fn lock<T>(mutex: &Mutex<T>) -> MutexGuard<'_, T> {
    mutex.lock().unwrap_or_else(PoisonError::into_inner)
}

/// A running focus watch, which stops when this is dropped. It keeps its library loaded.
///
/// Dropping it waits for the handler that runs, and up to one interval. In the handler itself it doesn't wait: the watch
/// ends when the handler returns, and the next start waits for its thread. Until then the DLL stays loaded.
///
/// See [`Library::watch_focus`](crate::Library::watch_focus).
#[must_use = "the watch stops when this is dropped"]
pub struct FocusWatch {
    watch: Arc<Watch>,
    stopped: bool,
}

impl std::fmt::Debug for FocusWatch {
    fn fmt(&self, f: &mut std::fmt::Formatter<'_>) -> std::fmt::Result {
        f.debug_struct("FocusWatch").field("ended", &self.watch.ended).finish_non_exhaustive()
    }
}

impl FocusWatch {
    /// Stops the watch, and hands out the panic that ended the handler, if one did.
    ///
    /// # Errors
    ///
    /// What the handler panicked with.
    pub fn stop(mut self) -> std::thread::Result<()> {
        self.end();
        let panic = lock(&self.watch.panic).take();
        panic.map_or(Ok(()), Err)
    }

    /// Once: afterwards another start may hold CONTROL and wait for this very thread.
    fn end(&mut self) {
        if !std::mem::replace(&mut self.stopped, true) {
            self.watch.end();
        }
    }
}

impl Drop for FocusWatch {
    fn drop(&mut self) {
        self.end();
    }
}

pub(crate) fn start(exports: &Arc<Exports>, interval: i32, handler: Handler) -> Result<FocusWatch, Error> {
    // In the handler, the thread that holds CONTROL may be waiting for this one.
    if IN_HANDLER.with(Cell::get) {
        return Err(Error::WatchRunning);
    }
    let _control = lock(&CONTROL);
    free_place()?;
    let watch = Arc::new(Watch {
        exports: exports.clone(),
        handler: Mutex::new(Some(handler)),
        panic: Mutex::new(None),
        ended: AtomicBool::new(false),
        abandoned: AtomicBool::new(false),
    });
    *lock(&CURRENT) = Some(watch.clone());
    // SAFETY: the callback is a function of this program, which is there until the stop has returned.
    unsafe {
        (exports.set_focus_callback)(Some(hear));
        (exports.start_focus_watch)(interval);
    }
    Ok(FocusWatch { watch, stopped: false })
}

/// The caller holds CONTROL.
fn free_place() -> Result<(), Error> {
    let current = lock(&CURRENT).clone();
    match current {
        None => Ok(()),
        Some(watch) if watch.abandoned.load(Ordering::SeqCst) => {
            watch.join();
            Ok(())
        }
        Some(_) => Err(Error::WatchRunning),
    }
}

impl Watch {
    /// The guard's end, which comes once.
    fn end(&self) {
        self.ended.store(true, Ordering::SeqCst);
        // In the handler, too, this may wait for CONTROL: its holder would wait for the handler only where the guard, which
        // is here, had been dropped.
        let control = lock(&CONTROL);
        if IN_HANDLER.with(Cell::get) {
            self.order_stop();
            self.abandoned.store(true, Ordering::SeqCst);
            return;
        }
        self.join();
        drop(control);
        // The host's own code, so outside of the lock.
        let handler = lock(&self.handler).take();
        drop(handler);
    }

    /// On the watch's own thread it is an order that the thread follows later; elsewhere it waits for it. The caller holds
    /// CONTROL.
    fn order_stop(&self) {
        // SAFETY: CONTROL keeps other starts and stops away.
        unsafe { (self.exports.stop_focus_watch)() }
    }

    /// The caller holds CONTROL, and isn't in the handler.
    fn join(&self) {
        self.order_stop();
        // SAFETY: null silences it.
        unsafe { (self.exports.set_focus_callback)(None) }
        *lock(&CURRENT) = None;
    }

    /// On the watch's thread.
    fn hear(&self, change: FocusChange) {
        let taken = lock(&self.handler).take();
        let left = taken.and_then(|handler| self.run(handler, change));
        let goes_on = left.is_some();
        *lock(&self.handler) = left;
        if goes_on {
            return;
        }
        self.ended.store(true, Ordering::SeqCst);
        // Where somebody is starting or stopping the watch right now, the next change is soon enough.
        if let Ok(_control) = CONTROL.try_lock() {
            self.order_stop();
        }
    }

    /// The handler, if it is to be called again; otherwise it is dropped in here, where its panics are caught.
    fn run(&self, mut handler: Handler, change: FocusChange) -> Option<Handler> {
        let left = catch_unwind(AssertUnwindSafe(move || {
            let goes_on = handler(change).is_continue() && !self.ended.load(Ordering::SeqCst);
            goes_on.then_some(handler)
        }));
        left.unwrap_or_else(|panic| {
            *lock(&self.panic) = Some(panic);
            None
        })
    }
}

/// What the DLL calls. No panic may leave it.
unsafe extern "C" fn hear(exe_name: *const c_char, process_id: u32, path: *const c_char) {
    // SAFETY: the DLL's texts live until this returns.
    let change = unsafe { FocusChange { exe_name: text(exe_name), process_id, path: text(path) } };
    let current = lock(&CURRENT).clone();
    if let Some(watch) = current {
        IN_HANDLER.with(|inside| inside.set(true));
        watch.hear(change);
        IN_HANDLER.with(|inside| inside.set(false));
    }
}

/// # Safety
/// `text` is null or ends with a zero.
unsafe fn text(text: *const c_char) -> String {
    if text.is_null() {
        return String::new();
    }
    // SAFETY: the caller's.
    unsafe { CStr::from_ptr(text) }.to_string_lossy().into_owned()
}
