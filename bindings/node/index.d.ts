/// <reference types="node" />
import { EventEmitter } from 'events';

/** A game. The members are those of the library's JSON. */
export interface Game {
  /** Display name. */
  name: string;
  /** Full path of the executable, with backslashes; empty for a game that only launches by URI. */
  loc: string;
  /** The icon as a data URI of a PNG, or empty. */
  icon: string;
  /** URI that launches the game, such as "steam://run/620", or empty. */
  launchUrl: string;
  /** File name of the executable, or empty. */
  exeName: string;
}

/** What can be shown for an executable. */
export interface GameDetails {
  /** File description or product name of the version resource, else the file name without extension. */
  name: string;
  /** The icon as a data URI of a PNG, or empty. */
  ico: string;
  /** The path that was found, with backslashes. */
  exepath: string;
  /** File name of the executable. */
  exe: string;
}

/** An installed application that has an executable. */
export interface Application {
  name: string;
  publisher: string;
  version: string;
  /** Full path of the executable. */
  loc: string;
  /** Install date, as the registry has it. */
  date: string;
  /** Estimated size in kilobytes; 0 if unknown. */
  sizeKB: number;
  /** The icon as a data URI of a PNG, or empty. */
  icon: string;
}

export interface ApplicationWithFileName extends Application {
  /** File name of the executable. */
  exeName: string;
}

/** A game to look for among the installed applications. No text may contain a double quote or a brace. */
export interface GameRequest {
  /** File name of the game's executable. */
  exeName: string;
  /** Folder below the install folder where the executable lies; the install folder itself is tried next. */
  exePath?: string;
  /** The name that the answer carries; without it, the installed application's own. */
  name?: string;
}

export interface FilterOptions {
  /** Keeps the applications whose name or publisher contains it, without regard to case. */
  filter?: string | null;
}

export interface PageOptions extends FilterOptions {
  /** Counts from 1, which is the default. */
  page?: number;
  /** 20 by default, and where it is below 1. */
  pageSize?: number;
}

export interface WatchOptions {
  /** Milliseconds between two looks at the foreground: 200 by default, and where it is below 50. */
  interval?: number;
}

/** A process that has come to the foreground. The texts are empty where it can't be opened, as one that is elevated. */
export interface FocusChange {
  /** File name of its executable. */
  fileName: string;
  processId: number;
  /** Full path of its executable. */
  fullPath: string;
}

/**
 * The watch of the foreground. It keeps the process running, unless it is told to `unref()`. What a listener throws or
 * rejects with is emitted as 'error'; as with every EventEmitter that ends the process where nobody listens.
 */
export interface FocusWatch extends EventEmitter {
  /**
   * Ends the watch: resolves when its thread is gone, after one interval or so. Changes that come behind the call are
   * dropped. Never blocks the event loop, and may be called from a listener and more than once.
   */
  stop(): Promise<void>;
  ref(): this;
  unref(): this;

  on(event: 'change', listener: (change: FocusChange) => void): this;
  on(event: 'error', listener: (error: unknown) => void): this;
  on(event: 'stopped', listener: () => void): this;
  once(event: 'change', listener: (change: FocusChange) => void): this;
  once(event: 'error', listener: (error: unknown) => void): this;
  once(event: 'stopped', listener: () => void): this;
  off(event: 'change', listener: (change: FocusChange) => void): this;
  off(event: 'error', listener: (error: unknown) => void): this;
  off(event: 'stopped', listener: () => void): this;
}

/**
 * The loaded library. Its calls run on worker threads and leave the event loop free. Failures inside the library are empty
 * lists; its debug output tells of them. Calls that the library's locks would make wait for each other take turns.
 */
export interface Tarnwick {
  /**
   * The installed games of a catalogue, and those that launchers report by themselves. There is no time limit; seconds are
   * usual. Without a path, or where there is no such file, MasterGameList.xml in the current directory is taken.
   */
  scan(cataloguePath?: string | null): Promise<Game[]>;
  /** The same search as a report in the debug output, with MasterGameList.xml in the current directory. */
  report(): Promise<void>;
  /** What can be shown for one executable, without a scan; null where there is no such file. */
  gameDetails(path: string): Promise<GameDetails | null>;
  /** Reads the installed applications anew, and resolves to their number before any filter. */
  refresh(): Promise<number>;
  /** One page of the installed applications. */
  applications(options?: PageOptions): Promise<Application[]>;
  /** All installed applications, with every icon. */
  allApplications(options?: FilterOptions): Promise<ApplicationWithFileName[]>;
  /** Looks games up among the installed applications: one element for each that was found. */
  findGames(requests: readonly GameRequest[]): Promise<Application[]>;
  /** The same with the contents of a file; empty where it can't be read. */
  findGamesInFile(path: string): Promise<Application[]>;
  /**
   * Starts to watch the foreground, on the main thread alone. A process has one watch at a time: throws WATCH_RUNNING until
   * the stop() of the one before has resolved. The present process is the first 'change'.
   */
  watchFocus(options?: WatchOptions): FocusWatch;
  /** Stops the watch, waits for the calls that are under way and unloads the DLL. Every call after it fails: CLOSED. */
  close(): Promise<void>;
}

export type TarnwickErrorCode =
  /** An argument of the wrong type, or one that the library can't be asked with. */
  | 'BAD_ARGUMENT'
  /** This is not Windows. */
  | 'UNSUPPORTED_PLATFORM'
  /** There is no DLL where it was looked for. */
  | 'DLL_MISSING'
  /** The file is no library. */
  | 'NOT_A_LIBRARY'
  /** The DLL is built for another processor than this Node.js. */
  | 'WRONG_BITNESS'
  /** Windows refused to load it. */
  | 'LOAD_FAILED'
  /** A function is not there: the DLL is of another version. */
  | 'EXPORT_MISSING'
  /** The answer never fitted its buffer, four times. */
  | 'ANSWER_CUT'
  /** The answer is no JSON, or no UTF-8. */
  | 'INVALID_JSON'
  /** A call after close(). */
  | 'CLOSED'
  /** The process has a focus watch already. */
  | 'WATCH_RUNNING'
  /** A focus watch was wanted on a worker thread. */
  | 'WATCH_IN_WORKER';

export class TarnwickError extends Error {
  readonly name: 'TarnwickError';
  readonly code: TarnwickErrorCode;
  readonly cause?: unknown;
}

/**
 * Loads Tarnwick.dll: the one that lies in this package, or the one at a whole path. Nothing is looked for in the current
 * directory or in PATH. Throws TarnwickError.
 */
export function load(dllPath?: string): Tarnwick;
