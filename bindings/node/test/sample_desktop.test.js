'use strict';
// The library that lies in the package, on the sample desktop.

const assert = require('assert');
const { spawn } = require('child_process');
const { test } = require('node:test');
const { load } = require('tarnwick');

const CATALOGUE = 'C:\\TarnwickDemo\\MasterGameList.xml';
const EXECUTABLE = 'C:\\Program Files\\Fernpad\\fernpad.exe';

test('a scan finds the games, and the event loop turns meanwhile', async () => {
  const library = load();
  let ticks = 0;
  const timer = setInterval(() => { ticks += 1; }, 1);
  const games = await library.scan(CATALOGUE);
  clearInterval(timer);
  await library.close();
  assert.ok(games.length >= 39, `${games.length} games`);
  assert.deepStrictEqual(Object.keys(games[0]), ['name', 'loc', 'icon', 'launchUrl', 'exeName']);
  assert.match(games.find(({ name }) => name === 'Kiteborne').launchUrl, /^steam:/);
  assert.ok(games.some(({ icon }) => icon.startsWith('data:image/png;base64,')));
  assert.ok(ticks > 0, 'no timer ticked');
});

test('applications, details and lookups', async () => {
  const library = load();
  const page = await library.applications({ pageSize: 3 });
  assert.strictEqual(page.length, 3);
  const every = await library.allApplications();
  assert.ok(every.length > 5 && every.length <= await library.refresh());
  const details = await library.gameDetails(EXECUTABLE);
  assert.deepStrictEqual([details.exe, details.exepath], ['fernpad.exe', EXECUTABLE]);
  assert.strictEqual(await library.gameDetails('C:\\None\\none.exe'), null);
  const found = await library.findGames([{ name: 'Mine', exeName: 'fernpad.exe', exePath: 'bin\\x64' }, { exeName: 'mail.exe' }]);
  assert.deepStrictEqual(found.map(({ name }) => name), ['Mine', 'Harbour Mail — Почта']);
  await library.close();
});

test('calls of all kinds at once', async () => {
  const library = load();
  const [games, applications, details] = await Promise.all([
    library.scan(CATALOGUE), library.allApplications(), library.gameDetails(EXECUTABLE), library.refresh(), library.report(),
    library.scan(CATALOGUE), library.applications(),
  ]);
  assert.ok(games.length >= 39 && applications.length > 5 && details.exe === 'fernpad.exe');
  await library.close();
});

test('the watch hears of a program that comes to the foreground', async () => {
  const library = load();
  const watch = library.watchFocus({ interval: 50 });
  const notepad = spawn('notepad.exe', { stdio: 'ignore' });
  const change = await new Promise((resolve) => {
    watch.on('change', (heard) => { if (heard.processId === notepad.pid) resolve(heard); });
  });
  assert.strictEqual(change.fileName, 'notepad.exe');
  assert.match(change.fullPath, /^C:\\.*\\notepad\.exe$/i);
  notepad.kill();
  await library.close();
});
