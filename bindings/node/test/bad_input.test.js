'use strict';
// Each thing that can be wrong, as the error that tells of it.

const assert = require('assert');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { test } = require('node:test');
const { load, TarnwickError } = require('tarnwick');
const { MISSING_EXPORT, STAND_IN, fails, withLibrary } = require('./support');

// koffi brings itself for other processors.
const KOFFI = path.join(path.dirname(require.resolve('koffi')), 'build', 'koffi');

const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tarnwick-'));
process.on('exit', () => fs.rmSync(folder, { recursive: true }));

function fileOf(bytes) {
  const file = path.join(folder, `${fs.readdirSync(folder).length}.dll`);
  fs.writeFileSync(file, bytes);
  return file;
}

test('no such DLL', () => {
  const missing = path.join(folder, 'Größe', 'Tarnwick.dll');
  return fails(() => load(missing), 'DLL_MISSING', /give load\(\) the path of Tarnwick\.dll .*Größe/);
});

test('a file that is no library', async () => {
  const library = fs.readFileSync(STAND_IN);
  const farHead = Buffer.from(library);
  farHead.writeUInt32LE(0xfffffff0, 60);
  const contents = ['', 'text', 'MZ', library.subarray(0, 63), library.subarray(0, 64), farHead, Buffer.alloc(8192)];
  for (const bytes of contents) await fails(() => load(fileOf(bytes)), 'NOT_A_LIBRARY', /is no Windows library/);
  await fails(() => load(folder), 'NOT_A_LIBRARY', /cannot be read/);
});

test('a library for another processor', async () => {
  for (const name of ['ia32', 'arm64']) {
    const file = path.join(KOFFI, `win32_${name}`, 'koffi.node');
    await fails(() => load(file), 'WRONG_BITNESS', new RegExp(`is built for ${name} .*Node\\.js for x64: use a Node\\.js for ${name}`));
  }
});

test('a library that is cut short', () => {
  const file = fileOf(fs.readFileSync(STAND_IN).subarray(0, 4096));
  return fails(() => load(file), 'LOAD_FAILED', /^Windows cannot load .*\.dll: ./);
});

test('a library of another version', () =>
  fails(() => load(MISSING_EXPORT), 'EXPORT_MISSING', /has no function IA_RefreshCache: take the Tarnwick\.dll of/));

test('a DLL is never looked for', async () => {
  const before = process.cwd();
  process.chdir(path.dirname(STAND_IN));
  try {
    const name = path.basename(STAND_IN);
    const drive = STAND_IN.slice(0, 2);
    for (const vague of [name, `.\\${name}`, `${drive}${name}`, STAND_IN.slice(2), '', '\\']) {
      await fails(() => load(vague), 'BAD_ARGUMENT', /path of the DLL must be whole/);
    }
  } finally {
    process.chdir(before);
  }
});

test('an answer that keeps growing', () => withLibrary(async (library) => {
  await fails(() => library.scan('cut'), 'ANSWER_CUT', /kept growing/);
  const [{ name }] = await library.scan('counts');
  assert.match(name, /cuts=4$/, 'it gives up after four times');
}));

test('an answer that is no JSON', () => withLibrary((library) =>
  fails(() => library.scan('invalid'), 'INVALID_JSON', /9 bytes that are no JSON, please report this: ./)));

test('an answer that is no UTF-8', () => withLibrary((library) =>
  fails(() => library.scan('not-utf8'), 'INVALID_JSON', /no JSON, please report this: ./)));

test('a failed call leaves the next one alone', () => withLibrary(async (library) => {
  const failed = fails(() => library.scan('invalid'), 'INVALID_JSON', /./);
  assert.strictEqual((await library.scan('echo:next'))[0].name, 'echo:next');
  await failed;
}));

test('calls after close', async () => {
  const library = load(STAND_IN);
  await library.close();
  const { close, ...calls } = library;
  assert.strictEqual(Object.keys(calls).length, 9);
  for (const call of Object.values(calls)) await fails(call, 'CLOSED', /is closed: call load\(\) again/);
  assert.throws(calls.watchFocus, TarnwickError);
  await close();
});

test('calls after close is asked for', async () => {
  const library = load(STAND_IN);
  const closed = library.close();
  await fails(() => library.scan(), 'CLOSED', /is closed/);
  await closed;
});

test('arguments that make no sense', () => withLibrary(async (library) => {
  const calls = [
    () => load(7), () => load(null), () => load(`${STAND_IN}\0`),
    () => library.scan(7), () => library.scan({}), () => library.scan('a\0b'),
    () => library.gameDetails(), () => library.gameDetails(null), () => library.gameDetails('a\0b'),
    () => library.applications(7), () => library.applications(null), () => library.applications({ page: 1.5 }),
    () => library.applications({ page: '1' }), () => library.applications({ pageSize: 2 ** 31 }),
    () => library.applications({ page: NaN }), () => library.applications({ filter: 7 }),
    () => library.applications({ filter: 'a\0b' }), () => library.allApplications({ filter: [] }),
    () => library.findGames(), () => library.findGames({}), () => library.findGames('[]'),
    () => library.findGames([null]), () => library.findGames([{}]), () => library.findGames([{ exeName: '' }]),
    () => library.findGames([{ exeName: 7 }]), () => library.findGames([{ exeName: 'a"b' }]),
    () => library.findGames([{ exeName: 'a', name: '}' }]), () => library.findGames([{ exeName: 'a', exePath: '{' }]),
    () => library.findGames([{ exeName: 'a\0' }]), () => library.findGamesInFile(), () => library.findGamesInFile('\0'),
    () => library.watchFocus(7), () => library.watchFocus({ interval: '50' }), () => library.watchFocus({ interval: 0.5 }),
  ];
  for (const call of calls) await fails(call, 'BAD_ARGUMENT', /must/);
}));

test('arguments fail as a promise does', () => withLibrary(async (library) => {
  const failed = library.scan(7);
  await fails(() => failed, 'BAD_ARGUMENT', /cataloguePath must be a string, not number/);
}));
