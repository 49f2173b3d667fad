const tarnwick = require('tarnwick');
const { name, version } = require('tarnwick/package.json');

console.log(name, version, Object.keys(tarnwick).sort().join(), typeof tarnwick.load);
