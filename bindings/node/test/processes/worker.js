'use strict';
// What a worker thread can do; its data is the path of the DLL.

const { load } = require('tarnwick');
const { parentPort, workerData } = require('worker_threads');

const library = load(workerData);
library.scan('echo:worker').then(async ([{ name }]) => {
  try {
    library.watchFocus();
  } catch (error) {
    parentPort.postMessage([name, error.code, error.message]);
  }
  await library.close();
});
