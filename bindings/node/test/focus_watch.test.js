'use strict';
// The focus watch, through the stand-in, which calls back at every interval.

const assert = require('assert');
const { once } = require('events');
const path = require('path');
const { test } = require('node:test');
const { Worker } = require('worker_threads');
const { load } = require('tarnwick');
const { SHORTEST_INTERVAL, STAND_IN, block, fails, withLibrary } = require('./support');

const OPTIONS = { interval: SHORTEST_INTERVAL };

/** Runs `use` with a running watch, which is stopped behind it. */
const withWatch = (use) => withLibrary(async (library) => {
  const watch = library.watchFocus(OPTIONS);
  await use(watch, library);
  await watch.stop();
});

const changes = (watch, count) => new Promise((resolve) => {
  const heard = [];
  watch.on('change', (change) => {
    heard.push(change);
    if (heard.length === count) resolve(heard);
  });
});

test('changes are told from the first one on', () => withWatch(async (watch) => {
  assert.deepStrictEqual(await changes(watch, 4), [
    { fileName: 'game.exe', processId: 4242, fullPath: 'C:\\Games\\game.exe' },
    { fileName: '', processId: 4243, fullPath: '' },
    { fileName: 'spät 🎮.exe', processId: 4244, fullPath: 'C:\\ゲーム\\spät 🎮.exe' },
    { fileName: 'game.exe', processId: 4245, fullPath: 'C:\\Games\\game.exe' },
  ]);
}));

test('no change comes after a stop, which is told once', () => withWatch(async (watch) => {
  await once(watch, 'change');
  const told = [];
  watch.on('change', () => told.push('change'));
  watch.on('stopped', () => told.push('stopped'));
  block(3 * SHORTEST_INTERVAL);
  const stopping = watch.stop();
  assert.strictEqual(watch.stop(), stopping);
  await stopping;
  await new Promise((resolve) => setTimeout(resolve, 3 * SHORTEST_INTERVAL));
  assert.deepStrictEqual(told, ['stopped']);
}));

test('a stop ends while the loop is busy', () => withWatch(async (watch) => {
  await once(watch, 'change');
  block(5 * SHORTEST_INTERVAL);
  const stopped = watch.stop();
  block(5 * SHORTEST_INTERVAL);
  await stopped;
}));

test('a listener can stop the watch', () => withWatch((watch) => new Promise((resolve, reject) => {
  watch.on('change', () => watch.stop().then(resolve, reject));
})));

test('a process has one watch, whoever loaded the library', () => withWatch(async (watch, library) => {
  await fails(() => library.watchFocus(OPTIONS), 'WATCH_RUNNING', /already runs in this process: await its stop\(\) first/);
  await withLibrary((other) => fails(() => other.watchFocus(OPTIONS), 'WATCH_RUNNING', /already runs/));
  const stopped = watch.stop();
  await fails(() => library.watchFocus(OPTIONS), 'WATCH_RUNNING', /already runs/);
  await stopped;
  const next = library.watchFocus(OPTIONS);
  const [change] = await once(next, 'change');
  assert.strictEqual(change.processId, 4242);
  await next.stop();
}));

test('another copy of the package sees the watch', () => withWatch(async () => {
  const files = Object.keys(require.cache).filter((file) => file.includes('\\node_modules\\tarnwick\\'));
  assert.strictEqual(files.length, 6);
  for (const file of files) delete require.cache[file];
  const copy = require('tarnwick');
  assert.notStrictEqual(copy.load, load);
  const library = copy.load(STAND_IN);
  assert.throws(() => library.watchFocus(OPTIONS), { name: 'TarnwickError', code: 'WATCH_RUNNING' });
  await library.close();
}));

test('the end of the process silences the watch', () => withWatch(async (watch) => {
  await once(watch, 'change');
  process.listeners('exit').pop()();
  // One change may be under way.
  await new Promise((resolve) => setTimeout(resolve, 2 * SHORTEST_INTERVAL));
  const told = [];
  watch.on('change', (change) => told.push(change));
  await new Promise((resolve) => setTimeout(resolve, 3 * SHORTEST_INTERVAL));
  assert.deepStrictEqual(told, []);
}));

test('a refused watch leaves the running one to be closed', () => withLibrary(async (library) => {
  const watch = library.watchFocus(OPTIONS);
  await fails(() => library.watchFocus(OPTIONS), 'WATCH_RUNNING', /already runs/);
  await Promise.all([once(watch, 'stopped'), library.close()]);
}));

test('closing the library stops the watch', async () => {
  const library = load(STAND_IN);
  const watch = library.watchFocus(OPTIONS);
  await once(watch, 'change');
  const told = [];
  watch.on('change', (change) => told.push(change));
  await Promise.all([once(watch, 'stopped'), library.close()]);
  assert.deepStrictEqual(told, []);
  await watch.stop();
});

test('what a listener throws is an error event, and the watch goes on', () => withWatch(async (watch) => {
  watch.once('change', () => { throw new Error('thrown'); });
  const [thrown] = await once(watch, 'error');
  assert.strictEqual(thrown.message, 'thrown');
  watch.once('change', async () => { throw new Error('rejected'); });
  const [rejected] = await once(watch, 'error');
  assert.strictEqual(rejected.message, 'rejected');
  await once(watch, 'change');
}));

test('many watches follow each other', () => withLibrary(async (library) => {
  const listeners = process.listenerCount('exit');
  for (let i = 0; i < 20; i += 1) {
    const watch = library.watchFocus(OPTIONS);
    await once(watch, 'change');
    await watch.stop();
  }
  assert.strictEqual(process.listenerCount('exit'), listeners);
}));

test('a worker thread can scan, but not watch', async () => {
  const worker = new Worker(path.join(__dirname, 'processes', 'worker.js'), { workerData: STAND_IN });
  const [[name, code, message]] = await once(worker, 'message');
  assert.deepStrictEqual([name, code], ['echo:worker', 'WATCH_IN_WORKER']);
  assert.match(message, /main thread/);
  await once(worker, 'exit');
});

test('calls go on beside the watch', () => withWatch(async (watch, library) => {
  const heard = changes(watch, 3);
  for (let i = 0; i < 20; i += 1) assert.strictEqual((await library.scan(`echo:${i}`))[0].name, `echo:${i}`);
  await heard;
}));
