// The games of a catalogue:
//   npm install tarnwick && node scan.mjs C:\Host\MasterGameList.xml
import { load } from 'tarnwick';

const [catalogue] = process.argv.slice(2);
const tarnwick = load();

const games = await tarnwick.scan(catalogue);
for (const { name, loc, launchUrl } of games) console.log(name.padEnd(32), loc || launchUrl);

await tarnwick.close();
