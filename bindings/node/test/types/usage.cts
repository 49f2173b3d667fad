// The same from CommonJS: the types are those of the other entry point.
import tarnwick = require('tarnwick');
import type { Game } from 'tarnwick';

const library: tarnwick.Tarnwick = tarnwick.load();
library.scan().then((games: Game[]) => console.log(games.length));
// @ts-expect-error: there is no such function
library.scanAll();
