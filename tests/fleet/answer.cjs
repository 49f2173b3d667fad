// Reads an array of SQL statements from the standard input, runs them in one DuckDB, and writes for each the names of its
// columns and its rows. Its tables are the files below the current folder.
const { DuckDBInstance } = require("@duckdb/node-api");

async function main() {
  const statements = JSON.parse(require("fs").readFileSync(0, "utf8"));
  const connection = await (await DuckDBInstance.create(":memory:")).connect();
  const answers = [];
  for (const statement of statements) {
    const answer = await connection.runAndReadAll(statement);
    answers.push({ columns: answer.columnNames(), rows: answer.getRowsJson() });
  }
  process.stdout.write(JSON.stringify(answers));
}

main().catch((error) => {
  console.error(error.message);
  process.exitCode = 1;
});
