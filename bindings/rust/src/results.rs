//! What the DLL answers. Serde names the members as the DLL's JSON does.

use serde::{Deserialize, Serialize};

/// A game that a scan found.
#[derive(Clone, Debug, PartialEq, Eq, Hash, Serialize, Deserialize)]
#[non_exhaustive]
pub struct Game {
    /// Display name.
    pub name: String,
    /// Full path of the executable; empty for a game that only launches by URI. `loc` in the JSON.
    #[serde(rename = "loc")]
    pub path: String,
    /// The icon as a data URI of a PNG, or empty.
    pub icon: String,
    /// URI that launches the game, such as `steam://run/620`, or empty. `launchUrl` in the JSON.
    #[serde(rename = "launchUrl")]
    pub launch_url: String,
    /// File name of the executable, or empty. `exeName` in the JSON.
    #[serde(rename = "exeName")]
    pub exe_name: String,
}

/// An installed application.
#[derive(Clone, Debug, PartialEq, Eq, Hash, Serialize, Deserialize)]
#[non_exhaustive]
pub struct Application {
    /// Display name; of a lookup the name in the request, where that has one.
    pub name: String,
    /// Publisher, or empty.
    pub publisher: String,
    /// Version as the application's installer wrote it, or empty.
    pub version: String,
    /// Full path of the executable. On a page of applications it may stand in double quotes or have an icon's number
    /// behind it, as the registry has it. `loc` in the JSON.
    #[serde(rename = "loc")]
    pub path: String,
    /// File name of the executable. [`Library::all_applications`](crate::Library::all_applications) alone knows it.
    /// `exeName` in the JSON.
    #[serde(rename = "exeName", default, skip_serializing_if = "Option::is_none")]
    pub exe_name: Option<String>,
    /// Date of installation as the registry has it, most often YYYYMMDD, or empty.
    pub date: String,
    /// Estimated size in kilobytes as the registry has it, 0 if unknown. A size of 2 TiB or more comes out negative.
    /// `sizeKB` in the JSON.
    #[serde(rename = "sizeKB")]
    pub size_kb: i64,
    /// The icon as a data URI of a PNG, or empty.
    pub icon: String,
}

/// What a host can show for one executable.
#[derive(Clone, Debug, PartialEq, Eq, Hash, Serialize, Deserialize)]
#[non_exhaustive]
pub struct Details {
    /// File description or product name of the version resource, else the file name without its extension.
    pub name: String,
    /// The icon as a data URI of a PNG, or empty. `ico` in the JSON.
    #[serde(rename = "ico")]
    pub icon: String,
    /// Full path of the file that was found. `exepath` in the JSON.
    #[serde(rename = "exepath")]
    pub path: String,
    /// File name. `exe` in the JSON.
    #[serde(rename = "exe")]
    pub exe_name: String,
}

/// A new foreground process. The texts are empty where the process can't be opened, such as an elevated one.
#[derive(Clone, Debug, PartialEq, Eq, Hash, Serialize, Deserialize)]
#[non_exhaustive]
pub struct FocusChange {
    /// File name of the process's executable, or empty. `exe` in JSON, as `tarnwick watch` writes it.
    #[serde(rename = "exe")]
    pub exe_name: String,
    /// Process id. `pid` in JSON.
    #[serde(rename = "pid")]
    pub process_id: u32,
    /// Full path of the executable, or empty.
    pub path: String,
}
