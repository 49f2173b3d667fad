'use strict';
// Native calls on worker threads, and their answers.

const { TarnwickError } = require('./errors');

// Icons make answers large, and asking for the length first would cost the whole call.
const FIRST_SIZE = 4 << 20;
const LARGEST_SIZE = 0x7fffffff;
const ATTEMPTS = 4;

/** Calls a native function on a worker thread. */
function called(native, ...values) {
  return new Promise((resolve, reject) => {
    native.async(...values, (error, result) => (error ? reject(error) : resolve(result)));
  });
}

function parsed(bytes) {
  try {
    return JSON.parse(new TextDecoder('utf-8', { fatal: true }).decode(bytes));
  } catch (cause) {
    throw new TarnwickError('INVALID_JSON',
      `the library answered ${bytes.length} bytes that are no JSON, please report this: ${cause.message}`, { cause });
  }
}

/** The parsed answer of an export that fills a buffer. */
async function answerOf(native, ...values) {
  let size = FIRST_SIZE;
  for (let attempt = 0; attempt < ATTEMPTS && size <= LARGEST_SIZE; attempt += 1) {
    const buffer = Buffer.allocUnsafe(size);
    const length = await called(native, ...values, buffer, size);
    if (length < size) return parsed(buffer.subarray(0, Math.max(length, 0)));
    size = length + 1;
  }
  throw new TarnwickError('ANSWER_CUT',
    `the answer kept growing, at last to ${size - 1} bytes, and never fitted its buffer: try again`);
}

/**
 * A function that runs `work` when everything that took one of the same lanes before is done. What the library's locks
 * would make wait anyway waits here, so that it doesn't hold the few worker threads, which others need as well.
 */
function makeLanes() {
  const lastOf = new Map();
  return function inTurn(lanes, work) {
    const result = Promise.all(lanes.map((lane) => lastOf.get(lane))).then(work);
    const done = result.catch(() => {});
    for (const lane of lanes) lastOf.set(lane, done);
    return result;
  };
}

module.exports = { answerOf, called, makeLanes };
