// Which process is in the foreground, for some seconds:
//   npm install tarnwick && node watch.mjs 60
import { setTimeout } from 'timers/promises';
import { load } from 'tarnwick';

const seconds = Number(process.argv[2] ?? 60);
const tarnwick = load();

const watch = tarnwick.watchFocus({ interval: 200 });
watch.on('change', ({ fileName, processId, fullPath }) => console.log(processId, fileName || '(not to be opened)', fullPath));
watch.on('error', (error) => console.error('a listener failed:', error));
watch.on('stopped', () => console.log('stopped'));

await setTimeout(seconds * 1000);
await watch.stop();
await tarnwick.close();
