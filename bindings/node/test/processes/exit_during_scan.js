'use strict';

const library = require('tarnwick').load();
library.scan('C:\\TarnwickDemo\\MasterGameList.xml');
setTimeout(() => process.exit(7), 50);
