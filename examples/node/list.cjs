// The installed applications whose name or publisher contains a text, page by page:
//   npm install tarnwick && node list.cjs microsoft
const { load, TarnwickError } = require('tarnwick');

const PAGE_SIZE = 50;

async function list(filter) {
  const tarnwick = load();
  for (let page = 1, applications; page === 1 || applications.length > 0; page += 1) {
    applications = await tarnwick.applications({ page, pageSize: PAGE_SIZE, filter });
    for (const { name, version, loc } of applications) console.log(name.padEnd(32), version.padEnd(12), loc);
  }
  await tarnwick.close();
}

list(process.argv[2]).catch((error) => {
  // What was wrong with the library is told by its code; the message says what to do.
  console.error(error instanceof TarnwickError ? `${error.code}: ${error.message}` : error);
  process.exitCode = 1;
});
