//! The focus watch against the stand-in, whose thread calls with each look.

mod common;

use common::stand_in;
use std::ops::ControlFlow::{Break, Continue};
use std::sync::mpsc::{channel, Receiver, RecvTimeoutError, Sender};
use std::sync::{Arc, Mutex, MutexGuard, PoisonError};
use std::time::{Duration, Instant};
use tarnwick::{Error, FocusChange, FocusWatch, Library};

const INTERVAL: Duration = Duration::from_millis(50);
/// Nothing here takes so long; only a failure waits for it.
const PATIENCE: Duration = Duration::from_secs(30);

/// A process has one watch, and tests run beside one another.
fn only_one() -> MutexGuard<'static, ()> {
    static ONE: Mutex<()> = Mutex::new(());
    ONE.lock().unwrap_or_else(PoisonError::into_inner)
}

fn next<T>(receiver: &Receiver<T>) -> T {
    receiver.recv_timeout(PATIENCE).expect("nothing was heard")
}

/// How many come until nobody is left who could send: the handler is gone, then.
fn rest<T>(receiver: &Receiver<T>) -> usize {
    let end = Instant::now() + PATIENCE;
    let mut count = 0;
    while let Ok(_) | Err(RecvTimeoutError::Timeout) = receiver.recv_timeout(INTERVAL).map(|_| count += 1) {
        assert!(Instant::now() < end, "the handler isn't gone");
    }
    count
}

fn watch(library: &Library, sender: Sender<FocusChange>) -> FocusWatch {
    library
        .watch_focus(INTERVAL, move |change| {
            sender.send(change).unwrap();
            Continue(())
        })
        .unwrap()
}

#[test]
fn the_handler_hears_of_each_change() {
    let _one = only_one();
    let (sender, heard) = channel();
    let library = stand_in();
    let watch = watch(&library, sender);
    let first = next(&heard);
    assert_eq!((first.exe_name.as_str(), first.process_id), ("game.exe", 4242));
    assert_eq!(first.path, "C:\\Games\\game.exe");
    let json = serde_json::json!({"exe": "game.exe", "pid": 4242, "path": "C:\\Games\\game.exe"});
    assert_eq!(serde_json::to_value(&first).unwrap(), json);
    let second = next(&heard);
    assert_eq!((second.exe_name.as_str(), second.process_id, second.path.as_str()), ("", 4243, ""));
    let third = next(&heard);
    assert_eq!((third.exe_name.as_str(), third.path.as_str()), ("spät 🎮.exe", "C:\\ゲーム\\spät 🎮.exe"));
    watch.stop().unwrap();
    rest(&heard);
}

#[test]
fn a_watch_stops_when_it_is_dropped_and_another_may_start() {
    let _one = only_one();
    let library = stand_in();
    for _ in 0..2 {
        let (sender, heard) = channel();
        let watch = watch(&library, sender);
        next(&heard);
        drop(watch);
        rest(&heard);
    }
}

#[test]
fn a_watch_keeps_its_library_loaded() {
    let _one = only_one();
    let (sender, heard) = channel();
    let library = stand_in();
    let watch = watch(&library, sender);
    drop(library);
    for _ in 0..3 {
        next(&heard);
    }
    drop(watch);
    rest(&heard);
}

#[test]
fn a_second_watch_is_refused() {
    let _one = only_one();
    let (sender, heard) = channel();
    let library = stand_in();
    let first = watch(&library, sender);
    for other in [library, stand_in()] {
        let error = other.watch_focus(INTERVAL, |_| Continue(())).unwrap_err();
        assert!(matches!(error, Error::WatchRunning));
        assert!(error.to_string().contains("one at a time"));
    }
    next(&heard);
    first.stop().unwrap();
}

#[test]
fn a_handler_that_breaks_is_not_called_again() {
    let _one = only_one();
    let (sender, heard) = channel();
    let library = stand_in();
    let watch = library
        .watch_focus(INTERVAL, move |change| {
            sender.send(change).unwrap();
            Break(())
        })
        .unwrap();
    assert_eq!(rest(&heard), 1);
    assert!(matches!(library.watch_focus(INTERVAL, |_| Continue(())), Err(Error::WatchRunning)));
    watch.stop().unwrap();
}

#[test]
fn a_panic_goes_no_further_and_is_handed_out() {
    let _one = only_one();
    let (sender, heard) = channel();
    let library = stand_in();
    let watch = library
        .watch_focus(INTERVAL, move |change| {
            sender.send(change).unwrap();
            std::panic::panic_any("the handler's own words");
        })
        .unwrap();
    assert_eq!(rest(&heard), 1);
    let panic = watch.stop().unwrap_err();
    assert_eq!(panic.downcast_ref(), Some(&"the handler's own words"));
    // The place is free again.
    library.watch_focus(INTERVAL, |_| Continue(())).unwrap().stop().unwrap();
}

struct PanicsWhenDropped;

impl Drop for PanicsWhenDropped {
    fn drop(&mut self) {
        panic!("when dropped");
    }
}

#[test]
fn a_panic_of_what_the_handler_holds_goes_no_further() {
    let _one = only_one();
    let (sender, heard) = channel::<()>();
    let held = PanicsWhenDropped;
    let watch = stand_in()
        .watch_focus(INTERVAL, move |_| {
            let _held = (&held, &sender);
            Break(())
        })
        .unwrap();
    assert_eq!(rest(&heard), 0);
    assert_eq!(watch.stop().unwrap_err().downcast_ref(), Some(&"when dropped"));
}

/// What lets a handler drop its own watch.
type Place = Arc<Mutex<Option<FocusWatch>>>;

/// A watch whose handler drops it at its first call, and sends then.
fn watch_that_drops_itself(library: &Library, sender: Sender<u32>, end: fn(FocusWatch)) {
    let place: Place = Arc::default();
    let mut held = place.lock().unwrap();
    let handlers_place = place.clone();
    let watch = library.watch_focus(INTERVAL, move |change| {
        let watch = handlers_place.lock().unwrap().take();
        watch.map(end);
        sender.send(change.process_id).unwrap();
        Continue(())
    });
    *held = Some(watch.unwrap());
}

#[test]
fn a_handler_may_drop_or_stop_its_watch() {
    let _one = only_one();
    let library = stand_in();
    let ends: [fn(FocusWatch); 2] = [drop, |watch| watch.stop().unwrap()];
    for end in ends {
        let (sender, heard) = channel();
        watch_that_drops_itself(&library, sender, end);
        assert_eq!(rest(&heard), 1);
        // The next start waits for the thread of the one before.
        let (sender, heard) = channel();
        let next_watch = watch(&library, sender);
        assert_eq!(next(&heard).process_id, 4242);
        drop(next_watch);
        rest(&heard);
    }
}

#[test]
fn the_library_may_be_dropped_while_a_handler_that_dropped_its_watch_goes_on() {
    let _one = only_one();
    let (sender, heard) = channel();
    watch_that_drops_itself(&stand_in(), sender, drop);
    assert_eq!(rest(&heard), 1);
    drop(stand_in().watch_focus(INTERVAL, |_| Continue(())).unwrap());
}

#[test]
fn a_handler_may_call_the_library_but_not_watch() {
    let _one = only_one();
    let (sender, heard) = channel();
    let library = stand_in();
    let inner = library.clone();
    let watch = library
        .watch_focus(INTERVAL, move |_| {
            let refused = matches!(inner.watch_focus(INTERVAL, |_| Continue(())), Err(Error::WatchRunning));
            sender.send((refused, inner.scan(None).unwrap().len())).unwrap();
            Break(())
        })
        .unwrap();
    assert_eq!(next(&heard), (true, 4));
    drop(watch);
}

#[test]
fn a_handler_that_dropped_its_watch_may_not_start_another() {
    let _one = only_one();
    let (sender, heard) = channel();
    let library = stand_in();
    let place: Place = Arc::default();
    let mut held = place.lock().unwrap();
    let (handlers_place, inner) = (place.clone(), library.clone());
    let watch = library.watch_focus(INTERVAL, move |_| {
        drop(handlers_place.lock().unwrap().take());
        let another = inner.watch_focus(INTERVAL, |_| Continue(()));
        sender.send(matches!(another, Err(Error::WatchRunning))).unwrap();
        Continue(())
    });
    *held = Some(watch.unwrap());
    drop(held);
    assert!(next(&heard));
    drop(library.watch_focus(INTERVAL, |_| Continue(())).unwrap());
}

#[test]
fn stopping_waits_for_the_handler() {
    let _one = only_one();
    let (sender, entered) = channel();
    let done = Arc::new(Mutex::new(false));
    let handlers_done = done.clone();
    let watch = stand_in()
        .watch_focus(INTERVAL, move |_| {
            sender.send(()).unwrap();
            std::thread::sleep(Duration::from_millis(200));
            *handlers_done.lock().unwrap() = true;
            Break(())
        })
        .unwrap();
    next(&entered);
    drop(watch);
    assert!(*done.lock().unwrap());
}
