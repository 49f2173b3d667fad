'use strict';
// The golden answers, and what arrives on the other side, through the stand-in.

const assert = require('assert');
const { test } = require('node:test');
const { load } = require('tarnwick');
const { STAND_IN, golden, withLibrary } = require('./support');

const ODD = 'echo:Größe 雪 🎮';

test('a scan gives the games', () => withLibrary(async (library) => {
  const games = await library.scan('C:\\MasterGameList.xml');
  assert.deepStrictEqual(games, golden('scan'));
  assert.deepStrictEqual(games.slice(1, 3).map(({ name, loc }) => [name, loc]), [
    ['Der "große" Spaß', 'D:\\Spiele\\Größe\\spaß.exe'],
    ['雪の夜 🎮', 'C:\\ゲーム\\雪の夜\\yuki.exe'],
  ]);
}));

test('a scan can do without a path', () => withLibrary(async (library) => {
  for (const nothing of [undefined, null, '']) assert.deepStrictEqual(await library.scan(nothing), golden('scan'));
}));

test('a path arrives as it is', () => withLibrary(async (library) => {
  assert.strictEqual((await library.scan(ODD))[0].name, ODD);
  assert.strictEqual((await library.gameDetails(ODD)).name, ODD);
  assert.strictEqual((await library.findGamesInFile(ODD))[0].name, ODD);
}));

test('details are one object, and null of what is not there', () => withLibrary(async (library) => {
  const details = await library.gameDetails('D:\\Spiele\\Größe\\spaß.exe');
  assert.deepStrictEqual(details, golden('details'));
  assert.strictEqual(details.exe, 'spaß.exe');
  assert.strictEqual(await library.gameDetails('missing'), null);
  assert.strictEqual(await library.gameDetails(''), null);
}));

test('applications come by page', () => withLibrary(async (library) => {
  assert.deepStrictEqual(await library.applications(), golden('apps'));
  assert.deepStrictEqual(await library.applications({ page: 2 }), []);
}));

test('page, its size and the filter arrive', () => withLibrary(async (library) => {
  const heard = async (options) => {
    const [{ name, version, sizeKB }] = await library.applications(options);
    return [name, Number(version), sizeKB];
  };
  assert.deepStrictEqual(await heard({ page: 7, pageSize: -5, filter: ODD }), [ODD, 7, -5]);
  assert.deepStrictEqual(await heard({ filter: ODD }), [ODD, 1, 20]);
}));

test('all applications come at once', () => withLibrary(async (library) => {
  assert.deepStrictEqual(await library.allApplications(), golden('apps-all'));
  assert.deepStrictEqual(await library.allApplications({ filter: 'nothing' }), []);
  assert.strictEqual((await library.allApplications({ filter: ODD }))[0].name, ODD);
}));

test('games are looked up', () => withLibrary(async (library) => {
  const requests = [{ name: 'Mine', exeName: 'fernpad.exe', exePath: 'bin' }];
  assert.deepStrictEqual(await library.findGames(requests), golden('find'));
  assert.deepStrictEqual(await library.findGames([]), []);
  assert.deepStrictEqual(await library.findGamesInFile('C:\\request.json'), golden('find'));
  assert.deepStrictEqual(await library.findGamesInFile('missing'), []);
}));

test('a request is written without escapes', () => withLibrary(async (library) => {
  const [{ name }] = await library.findGames([{ name: ODD, exeName: 'a.exe', exePath: 'bin\\x64' }, { exeName: 'é.exe' }]);
  assert.strictEqual(name, `[{"exeName":"a.exe","exePath":"bin\\x64","name":"${ODD}"},`
    + '{"exeName":"é.exe","exePath":"","name":""}]');
}));

test('a refresh gives the number of applications', () => withLibrary(async (library) => {
  assert.strictEqual(await library.refresh(), 3);
}));

test('a report is made', () => withLibrary(async (library) => {
  const reports = async () => Number(/reports=(\d+)/.exec((await library.scan('counts'))[0].name)[1]);
  const before = await reports();
  assert.strictEqual(await library.report(), undefined);
  assert.strictEqual(await reports(), before + 1);
}));

test('an answer larger than the first buffer is whole', () => withLibrary(async (library) => {
  const [{ icon }] = await library.scan('large');
  assert.strictEqual(icon.length, 5 << 20);
  assert.match(icon, /^A+$/);
}));

test('many calls at once all get their own answer', () => withLibrary(async (library) => {
  const texts = Array.from({ length: 300 }, (_, i) => `echo:${i}`);
  const answers = await Promise.all(texts.map((text) => library.gameDetails(text)));
  assert.deepStrictEqual(answers.map(({ name }) => name), texts);
}));

test('calls need no object in front', () => withLibrary(async ({ scan }) => {
  assert.deepStrictEqual(await scan(), golden('scan'));
}));

test('the library can be loaded twice, and again after it was closed', async () => {
  await withLibrary(async (first) => {
    await withLibrary(async (second) => assert.deepStrictEqual(await second.scan(), golden('scan')));
    assert.deepStrictEqual(await first.scan(), golden('scan'));
  });
  await withLibrary(async (again) => assert.deepStrictEqual(await again.scan(), golden('scan')));
});

test('closing waits for the calls that are under way', async () => {
  const library = load(STAND_IN);
  const calls = Array.from({ length: 20 }, () => library.scan('large'));
  const closed = library.close();
  assert.strictEqual(library.close(), closed);
  for (const answer of await Promise.all(calls)) assert.strictEqual(answer[0].icon.length, 5 << 20);
  await closed;
});
