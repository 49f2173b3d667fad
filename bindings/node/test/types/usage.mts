// What a host in TypeScript writes; only compiled.
import { load, TarnwickError } from 'tarnwick';
import type { Application, FocusChange, FocusWatch, Game, GameDetails, Tarnwick, TarnwickErrorCode } from 'tarnwick';

const tarnwick: Tarnwick = load('C:\\Host\\Tarnwick.dll');

const games: Game[] = await tarnwick.scan('C:\\MasterGameList.xml');
const titles: string[] = games.map(({ name, loc, icon, launchUrl, exeName }) => name + loc + icon + launchUrl + exeName);
const details: GameDetails | null = await tarnwick.gameDetails('C:\\game.exe');
const count: number = await tarnwick.refresh();
const page: Application[] = await tarnwick.applications({ page: 1, pageSize: 50, filter: 'fern' });
const size: number = page.reduce((sum, { sizeKB }) => sum + sizeKB, 0);
const files: string[] = (await tarnwick.allApplications({ filter: null })).map(({ exeName }) => exeName);
const found: Application[] = await tarnwick.findGames([{ exeName: 'a.exe' }, { exeName: 'b.exe', exePath: 'bin', name: 'B' }]);
const foundInFile: Application[] = await tarnwick.findGamesInFile('C:\\request.json');
const nothing: void = await tarnwick.report();

const watch: FocusWatch = tarnwick.watchFocus({ interval: 100 }).unref();
watch.on('change', ({ fileName, processId, fullPath }: FocusChange) => console.log(fileName, processId.toFixed(), fullPath));
watch.once('stopped', () => {}).on('error', (error) => console.error(error));
await watch.stop();

try {
  await tarnwick.close();
} catch (error) {
  if (error instanceof TarnwickError && error.code === 'CLOSED') console.error(error.message);
}
const code: TarnwickErrorCode = 'WRONG_BITNESS';

// @ts-expect-error: the details may be null
details.name;
// @ts-expect-error: a page of applications has no file names
page[0].exeName;
// @ts-expect-error: each request needs an exeName
tarnwick.findGames([{ name: 'A' }]);
// @ts-expect-error: pages are numbers
tarnwick.applications({ page: '1' });
// @ts-expect-error: a path is needed
tarnwick.gameDetails();
// @ts-expect-error: the details of a change are named
watch.on('change', ({ pid }) => console.log(pid));
// @ts-expect-error: there is no such code
const otherCode: TarnwickErrorCode = 'OTHER';

console.log(titles, count, size, files, found, foundInFile, nothing, code, otherCode);
