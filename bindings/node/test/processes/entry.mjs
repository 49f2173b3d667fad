import * as tarnwick from 'tarnwick';
import { load, TarnwickError } from 'tarnwick';
import { createRequire } from 'module';

const required = createRequire(import.meta.url)('tarnwick');
console.log(Object.keys(tarnwick).sort().join(), required.load === load && required.TarnwickError === TarnwickError);
