'use strict';

const { EventEmitter } = require('events');
const { isMainThread } = require('worker_threads');
const koffi = require('koffi');
const { called } = require('./calls');
const { FocusCallback } = require('./dll');
const { TarnwickError } = require('./errors');

// Where the process notes its watch: other copies of this package must see it too.
const RUNNING = Symbol.for('tarnwick.focusWatch');
const LONGEST_DELAY = 0x7fffffff;

function refuseSecondWatch() {
  if (!isMainThread) {
    // The thread that Tarnwick calls from outlives a worker, and would call into what is gone.
    throw new TarnwickError('WATCH_IN_WORKER', 'a focus watch must be started on the main thread');
  }
  if (process[RUNNING]) {
    throw new TarnwickError('WATCH_RUNNING', 'a focus watch already runs in this process: await its stop() first');
  }
}

/**
 * Emits 'change' with { fileName, processId, fullPath }, 'stopped', and 'error' with what a listener of these threw.
 *
 * Tarnwick's watch thread waits while the event loop takes a change, and StopFocusWatch waits for that thread. So the stop
 * is called on a worker: here it would keep the loop from taking what it waits for.
 */
class FocusWatch extends EventEmitter {
  #library;
  #callback;
  #stopping;
  #alive = setInterval(() => {}, LONGEST_DELAY);
  // At the end of the process nobody is left to take a change.
  #silence = () => this.#library.SetFocusCallbackEx(null);

  constructor(library, interval) {
    super({ captureRejections: true });
    this.#library = library;
    this.#callback = koffi.register((...change) => this.#take(...change), koffi.pointer(FocusCallback));
    process[RUNNING] = this;
    process.once('exit', this.#silence);
    library.SetFocusCallbackEx(this.#callback);
    library.StartFocusWatch(interval);
  }

  // Called by native code, which no exception may reach: so listeners are called later.
  #take(fileName, processId, fullPath) {
    setImmediate(() => {
      if (!this.#stopping) this.#tell('change', { fileName, processId, fullPath });
    });
  }

  #tell(event, ...values) {
    try {
      this.emit(event, ...values);
    } catch (error) {
      this.emit('error', error);
    }
  }

  /** Resolves when the watch has ended. No 'change' comes after the call. */
  stop() {
    this.#stopping ??= this.#end();
    return this.#stopping;
  }

  async #end() {
    this.#silence();
    await called(this.#library.StopFocusWatch);
    koffi.unregister(this.#callback);
    process.off('exit', this.#silence);
    clearInterval(this.#alive);
    delete process[RUNNING];
    setImmediate(() => this.#tell('stopped'));
  }

  /** Whether the watch alone keeps the process running, which it does from the start. */
  ref() {
    this.#alive.ref();
    return this;
  }

  unref() {
    this.#alive.unref();
    return this;
  }
}

function startFocusWatch(library, interval) {
  refuseSecondWatch();
  return new FocusWatch(library, interval);
}

module.exports = { startFocusWatch };
