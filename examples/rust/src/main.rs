//! Scan, list and watch with the Tarnwick.dll that lies beside this program.

use std::error::Error;
use std::ops::ControlFlow;
use std::path::Path;
use std::time::Duration;
use tarnwick::Library;

const USAGE: &str = "\
usage: tarnwick-example scan [CATALOGUE]    games
       tarnwick-example list [FILTER]       installed applications
       tarnwick-example watch SECONDS       who comes to the foreground";

fn scan(library: &Library, catalogue: Option<&str>) -> Result<(), tarnwick::Error> {
    for game in library.scan(catalogue.map(Path::new))? {
        let place = if game.path.is_empty() { &game.launch_url } else { &game.path };
        println!("{}\t{place}", game.name);
    }
    Ok(())
}

fn list(library: &Library, filter: Option<&str>) -> Result<(), tarnwick::Error> {
    for page in 1.. {
        let applications = library.applications(page, 20, filter)?;
        if applications.is_empty() {
            break;
        }
        for application in applications {
            println!("{}\t{}\t{}", application.name, application.version, application.path);
        }
    }
    Ok(())
}

fn watch(library: &Library, seconds: u64) -> Result<(), tarnwick::Error> {
    let watch = library.watch_focus(Duration::from_millis(200), |change| {
        println!("{}\t{}\t{}", change.process_id, change.exe_name, change.path);
        ControlFlow::Continue(())
    })?;
    std::thread::sleep(Duration::from_secs(seconds));
    drop(watch); // stops it
    Ok(())
}

fn main() -> Result<(), Box<dyn Error>> {
    let arguments: Vec<String> = std::env::args().skip(1).collect();
    let argument = arguments.get(1).map(String::as_str);
    let library = Library::load(std::env::current_exe()?.with_file_name("Tarnwick.dll"))?;
    match (arguments.first().map(String::as_str), argument) {
        (Some("scan"), catalogue) => scan(&library, catalogue)?,
        (Some("list"), filter) => list(&library, filter)?,
        (Some("watch"), Some(seconds)) => watch(&library, seconds.parse()?)?,
        _ => return Err(USAGE.into()),
    }
    Ok(())
}
