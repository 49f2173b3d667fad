'use strict';
// What the tests share. The environment says where things are: node_test.py sets it.

const assert = require('assert');
const fs = require('fs');
const path = require('path');
const { load, TarnwickError } = require('tarnwick');

const { TARNWICK_STAND_INS, TARNWICK_GOLDEN } = process.env;
const STAND_IN = path.join(TARNWICK_STAND_INS, 'Tarnwick-stand-in.dll');
const MISSING_EXPORT = path.join(TARNWICK_STAND_INS, 'Tarnwick-missing-export.dll');
const SHORTEST_INTERVAL = 50;

const golden = (name) => JSON.parse(fs.readFileSync(path.join(TARNWICK_GOLDEN, `${name}.json`), 'utf8'));

/** Runs `use` with the library, which is closed behind it. */
async function withLibrary(use, dllPath = STAND_IN) {
  const library = load(dllPath);
  try {
    return await use(library);
  } finally {
    await library.close();
  }
}

/** Expects a TarnwickError with this code whose message matches. Takes a function, async or not. */
const fails = (call, code, message) =>
  assert.rejects(async () => call(), (error) => {
    assert.ok(error instanceof TarnwickError, error.stack);
    assert.ok(error instanceof Error);
    assert.deepStrictEqual([error.name, error.code], ['TarnwickError', code], error.stack);
    assert.match(error.message, message);
    return true;
  });

/** Keeps the event loop from turning. */
const block = (milliseconds) => Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, milliseconds);

module.exports = { MISSING_EXPORT, SHORTEST_INTERVAL, STAND_IN, block, fails, golden, withLibrary };
