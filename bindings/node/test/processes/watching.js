'use strict';
// Nothing but the watch keeps this process running: no timer of its own, and no change to wait for.

const { load } = require('tarnwick');
const { STAND_IN } = require('../support');

const watch = load(STAND_IN).watchFocus({ interval: 1000 });
setTimeout(() => {
  console.log('still there');
  watch.stop();
}, 300).unref();
