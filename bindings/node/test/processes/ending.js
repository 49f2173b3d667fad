'use strict';
// A process that ends in one way or another while a watch runs: ending.js HOW

const { load } = require('tarnwick');
const { SHORTEST_INTERVAL, STAND_IN, block } = require('../support');

const ways = {
  'exit': () => process.exit(7),
  'exit-while-the-watch-waits': () => {
    block(5 * SHORTEST_INTERVAL);
    process.exit(7);
  },
  'exit-while-stopping': (watch) => {
    watch.stop();
    process.exit(7);
  },
  'exit-from-stopped': (watch) => {
    watch.on('stopped', () => process.exit(7));
    watch.stop();
  },
  'unref': (watch) => {
    process.exitCode = 7;
    watch.unref();
  },
  'unref-while-the-watch-waits': (watch) => {
    process.exitCode = 7;
    watch.unref();
    block(5 * SHORTEST_INTERVAL);
  },
  'throw': () => { throw new Error('thrown by a listener'); },
  'stop': (watch) => {
    process.exitCode = 7;
    watch.stop();
  },
};

const watch = load(STAND_IN).watchFocus({ interval: SHORTEST_INTERVAL });
watch.once('change', () => ways[process.argv[2]](watch));
