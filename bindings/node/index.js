'use strict';

const { int32Of, optionalText, optionsOf, requestOf, textOf } = require('./lib/arguments');
const { answerOf, called, makeLanes } = require('./lib/calls');
const { openLibrary } = require('./lib/dll');
const { TarnwickError } = require('./lib/errors');
const { startFocusWatch } = require('./lib/focus-watch');

// What takes turns with what: the library's two locks, and one each for the calls that take none.
const API = 'api lock';
const CACHE = 'cache lock';
const DETAILS = 'details';
const REPORT = 'report';

// Each call: its lanes, and what it asks for once its arguments are checked.
const CALLS = {
  scan: [[API], (library, cataloguePath) => {
    const path = optionalText(cataloguePath, 'cataloguePath');
    return () => answerOf(library.IA_RunMultiPlatformGameScanJson, path);
  }],
  report: [[REPORT], (library) => () => called(library.RunMultiPlatformGameScan)],
  gameDetails: [[DETAILS], (library, path) => {
    const text = textOf(path, 'path');
    return async () => {
      const details = await answerOf(library.IA_GetGameDetailsByPathJson, text);
      return details.exepath === undefined ? null : details;
    };
  }],
  refresh: [[API, CACHE], (library) => () => called(library.IA_RefreshCache)],
  applications: [[CACHE], (library, options) => {
    const { page = 1, pageSize = 20, filter } = optionsOf(options);
    const values = [int32Of(page, 'page'), int32Of(pageSize, 'pageSize'), optionalText(filter, 'filter')];
    return () => answerOf(library.IA_GetAppsJson, ...values);
  }],
  allApplications: [[API, CACHE], (library, options) => {
    const filter = optionalText(optionsOf(options).filter, 'filter');
    return () => answerOf(library.IA_GetAppsJsonAll, filter);
  }],
  findGames: [[CACHE], (library, requests) => {
    const text = requestOf(requests);
    return () => answerOf(library.IA_FindGamesJson, text);
  }],
  findGamesInFile: [[CACHE], (library, path) => {
    const text = textOf(path, 'path');
    return () => answerOf(library.IA_FindGamesByFile, text);
  }],
};

const closedError = () => new TarnwickError('CLOSED', 'this library is closed: call load() again');

/** Loads Tarnwick.dll: the one in this package, or the one that the whole path names. index.d.ts tells of its calls. */
function load(dllPath) {
  const library = openLibrary(dllPath);
  const inTurn = makeLanes();
  let watch;
  let closing;

  const callOf = (lanes, prepare) => async (...values) => {
    if (closing) throw closedError();
    return inTurn(lanes, prepare(library, ...values));
  };

  function watchFocus(options) {
    if (closing) throw closedError();
    watch = startFocusWatch(library, int32Of(optionsOf(options).interval ?? 200, 'interval'));
    return watch;
  }

  async function end() {
    await watch?.stop();
    await inTurn([API, CACHE, DETAILS, REPORT], library.unload);
  }

  function close() {
    closing ??= end();
    return closing;
  }

  const calls = Object.entries(CALLS).map(([name, [lanes, prepare]]) => [name, callOf(lanes, prepare)]);
  return Object.freeze({ ...Object.fromEntries(calls), watchFocus, close });
}

module.exports = { load, TarnwickError };
