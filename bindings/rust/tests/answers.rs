//! The stand-in's fixed answers, and what reaches it of the arguments.

mod common;

use common::stand_in;
use serde_json::{from_str, to_value, Value};
use std::path::Path;
use tarnwick::{Error, FindRequest, Game};

fn golden(text: &str) -> Value {
    from_str(text).unwrap()
}

fn answered_name(games: Vec<Game>) -> String {
    assert_eq!(games.len(), 1);
    games.into_iter().next().unwrap().name
}

fn request(name: &str, exe_name: &str, exe_path: &str) -> FindRequest {
    FindRequest { name: name.into(), exe_name: exe_name.into(), exe_path: exe_path.into() }
}

#[test]
fn a_scan_gives_the_golden_games() {
    let games = stand_in().scan(Some(Path::new("catalogue.xml"))).unwrap();
    assert_eq!(to_value(&games).unwrap(), golden(include_str!("../../golden/scan.json")));
    assert_eq!(games[0].launch_url, "steam://run/620");
    assert!(games[0].icon.starts_with("data:image/png;base64,iVBOR"));
    assert_eq!(games[1].name, "Der \"große\" Spaß");
    assert_eq!(games[1].path, "D:\\Spiele\\Größe\\spaß.exe");
    assert_eq!(games[1].exe_name, "spaß.exe");
    assert_eq!(games[2].name, "雪の夜 🎮");
    assert_eq!(games[3].path, "");
    assert_eq!(stand_in().scan(None).unwrap(), games);
}

#[test]
fn details_are_the_golden_ones_or_none() {
    let details = stand_in().game_details("C:\\any.exe").unwrap().unwrap();
    assert_eq!(to_value(&details).unwrap(), golden(include_str!("../../golden/details.json")));
    assert_eq!(details.name, "Der \"große\" Spaß");
    assert_eq!(details.path, "D:\\Spiele\\Größe\\spaß.exe");
    assert_eq!(details.exe_name, "spaß.exe");
    assert!(details.icon.starts_with("data:image/png;base64,"));
    assert_eq!(stand_in().game_details("missing").unwrap(), None);
}

#[test]
fn applications_are_the_golden_ones() {
    let library = stand_in();
    let page = library.applications(1, 20, None).unwrap();
    assert_eq!(to_value(&page).unwrap(), golden(include_str!("../../golden/apps.json")));
    assert_eq!((page[0].size_kb, page[0].date.as_str()), (48213, "20240229"));
    assert_eq!((page[0].publisher.as_str(), page[0].version.as_str()), ("Fern & Söhne", "2.1.0"));
    assert_eq!(page[0].path, "C:\\Program Files\\Fernpad\\fernpad.exe");
    assert_eq!(page[0].exe_name, None);
    assert_eq!(page[1].publisher, "Kůň\tLtd.");

    let every = library.all_applications(None).unwrap();
    assert_eq!(to_value(&every).unwrap(), golden(include_str!("../../golden/apps-all.json")));
    assert_eq!(every[2].exe_name.as_deref(), Some("ookii.exe"));
    assert_eq!(every[2].size_kb, -1_073_741_824);
    assert_eq!(library.refresh(), 3);
}

#[test]
fn nothing_found_is_an_empty_list() {
    let library = stand_in();
    assert_eq!(library.applications(2, 20, None).unwrap(), []);
    assert_eq!(library.applications(1, 20, Some("nothing")).unwrap(), []);
    assert_eq!(library.all_applications(Some("nothing")).unwrap(), []);
    assert_eq!(library.find_games(&[]).unwrap(), []);
    assert_eq!(library.find_games(&[request("", "nothing", "")]).unwrap(), []);
    assert_eq!(library.find_games_in_file("missing").unwrap(), []);
}

#[test]
fn lookups_are_the_golden_ones() {
    let found = stand_in().find_games(&[request("Mine", "fernpad.exe", "")]).unwrap();
    assert_eq!(to_value(&found).unwrap(), golden(include_str!("../../golden/find.json")));
    assert_eq!(stand_in().find_games_in_file("requests.json").unwrap(), found);
}

#[test]
fn texts_reach_the_library_whole() {
    let library = stand_in();
    let text = "echo:C:\\Spiele\\Größe 🎮\\雪.xml";
    assert_eq!(answered_name(library.scan(Some(Path::new(text))).unwrap()), text);
    assert_eq!(library.game_details(text).unwrap().unwrap().name, text);
    assert_eq!(library.find_games_in_file(text).unwrap()[0].name, text);
    assert_eq!(library.applications(1, 20, Some(text)).unwrap()[0].name, text);
    let every = library.all_applications(Some(text)).unwrap();
    assert_eq!((every[0].name.as_str(), every[0].exe_name.as_deref()), (text, None));
}

#[test]
fn pages_reach_the_library_and_no_number_is_too_large() {
    let library = stand_in();
    let asked = |page, size| {
        let page = library.applications(page, size, Some("echo:")).unwrap();
        (page[0].version.clone(), page[0].size_kb)
    };
    assert_eq!(asked(3, 50), ("3".into(), 50));
    assert_eq!(asked(0, 0), ("0".into(), 0));
    assert_eq!(asked(u32::MAX, u32::MAX), ("2147483647".into(), 2_147_483_647));
}

#[test]
fn requests_are_written_as_the_library_reads_them() {
    let requests = [request("echo:é", "a.exe", "bin\\win64\\"), request("", "b.exe", "")];
    assert_eq!(
        stand_in().find_games(&requests).unwrap()[0].name,
        "[{\"exeName\":\"a.exe\",\"exePath\":\"bin\\win64\\\",\"name\":\"echo:é\"},\
         {\"exeName\":\"b.exe\",\"exePath\":\"\",\"name\":\"\"}]"
    );
}

#[test]
fn requests_that_the_library_would_misread_are_refused() {
    let refused = |request: FindRequest| match stand_in().find_games(&[request]) {
        Err(Error::InvalidInput { argument, reason }) => format!("{argument} {reason}"),
        other => panic!("{other:?}"),
    };
    assert!(refused(request("Foo", "", "bin")).starts_with("exe_name is empty"));
    assert!(refused(request("Foo \"Two\"", "foo.exe", "")).starts_with("name holds a double quote"));
    assert!(refused(request("Foo", "{foo}.exe", "")).starts_with("exe_name holds a double quote or a brace"));
    assert!(refused(request("Foo", "foo.exe", "bin}")).starts_with("exe_path holds"));
    assert!(refused(request("Foo\0", "foo.exe", "")).starts_with("a request holds a zero character"));
}

#[test]
fn an_answer_that_outgrows_the_first_buffer_comes_whole() {
    let games = stand_in().scan(Some(Path::new("large"))).unwrap();
    assert_eq!((games[0].name.as_str(), games[0].icon.len()), ("large", 5 << 20));
}

#[test]
fn a_report_is_asked_for() {
    let library = stand_in();
    let reports = || answered_name(library.scan(Some(Path::new("counts"))).unwrap());
    assert!(reports().starts_with("reports=0 "));
    library.report();
    assert!(reports().starts_with("reports=1 "));
}

#[test]
fn clones_share_a_library_over_threads() {
    let library = stand_in();
    // All start before the first is waited for.
    #[allow(clippy::needless_collect)]
    let threads: Vec<_> = (0..4)
        .map(|_| {
            let library = library.clone();
            std::thread::spawn(move || library.scan(None).unwrap().len())
        })
        .collect();
    drop(library);
    assert!(threads.into_iter().all(|thread| thread.join().unwrap() == 4));
}
