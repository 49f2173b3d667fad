//! The library itself on the sample desktop, which desktop/samples/sample-desktop.json describes. TARNWICK_DLL names it.

#![cfg(windows)]

use std::ops::ControlFlow::Continue;
use std::path::Path;
use std::time::Duration;
use tarnwick::{FindRequest, Library};

fn library() -> Library {
    Library::load(std::env::var_os("TARNWICK_DLL").expect("TARNWICK_DLL names no file")).unwrap()
}

#[test]
#[ignore = "wants the sample desktop"]
fn a_scan_finds_the_games() {
    let games = library().scan(Some(Path::new(r"C:\TarnwickDemo\MasterGameList.xml"))).unwrap();
    let named = |name: &str| games.iter().find(|game| game.name == name).unwrap_or_else(|| panic!("{name} is missing"));
    assert!(games.len() > 30);
    assert_eq!(named("Copper Kestrel").path, r"C:\Games\Copper Kestrel\kestrel.exe");
    assert!(named("Copper Kestrel").icon.starts_with("data:image/png;base64,"));
    assert_eq!(named("Kiteborne").launch_url.split(':').next(), Some("steam"));
    assert!(games
        .iter()
        .any(|game| game.path == r"C:\Игры\Вьюгоград\вьюгоград.exe" && game.exe_name == "вьюгоград.exe"));
}

#[test]
#[ignore = "wants the sample desktop"]
fn applications_are_listed_filtered_and_looked_up() {
    let library = library();
    let count = library.refresh();
    let every = library.all_applications(None).unwrap();
    assert!(every.len() > 5 && every.len() <= count);
    assert!(every.iter().all(|app| app.exe_name.is_some()));
    assert_eq!(library.applications(1, 3, None).unwrap().len(), 3);
    assert_eq!(library.applications(u32::MAX, u32::MAX, None).unwrap(), []);
    let mail = library.applications(1, 20, Some("Почта")).unwrap();
    assert_eq!(mail.iter().map(|app| app.name.as_str()).collect::<Vec<_>>(), ["Harbour Mail \u{2014} Почта"]);
    let fernpad = FindRequest { name: "Mine".into(), exe_name: "fernpad.exe".into(), exe_path: "bin".into() };
    let mail = FindRequest { exe_name: "mail.exe".into(), ..FindRequest::default() };
    let found = library.find_games(&[fernpad, mail]).unwrap();
    let names: Vec<_> = found.iter().map(|app| app.name.as_str()).collect();
    assert_eq!(names, ["Mine", "Harbour Mail \u{2014} Почта"]);
}

#[test]
#[ignore = "wants the sample desktop"]
fn details_are_given_of_files_that_exist() {
    let library = library();
    let details = library.game_details(r"C:\Игры\Вьюгоград\вьюгоград.exe").unwrap().unwrap();
    assert_eq!((details.name.as_str(), details.exe_name.as_str()), ("Хроники Вьюгограда", "вьюгоград.exe"));
    assert_eq!(library.game_details(r"C:\nothing.exe").unwrap(), None);
}

#[test]
#[ignore = "wants the sample desktop"]
fn watches_start_and_stop_and_the_library_unloads() {
    for _ in 0..3 {
        let library = library();
        library.watch_focus(Duration::from_millis(50), |_| Continue(())).unwrap().stop().unwrap();
    }
    assert!(libloading::os::windows::Library::open_already_loaded("Tarnwick.dll").is_err());
}
