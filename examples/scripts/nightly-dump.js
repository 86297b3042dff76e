// SPDX-License-Identifier: GPL-3.0-or-later
// Writes a database to a file named after the day, and tells which files are
// older than the last few.
//   orbis script examples/scripts/nightly-dump.js DATABASE FOLDER [KEEP]
const [location, folder, keep] = script.args;
if (!folder) {
    console.error("give a database and a folder");
    exit(2);
}
const database = db.open(location, { readOnly: true });
const target = `${folder}/${new Date().toISOString().slice(0, 10)}`;
database.dump(`${target}.sql`);

// What was written, table by table.
const lines = [];
for (const schema of database.tree.children("schema"))
    for (const table of schema.children("table")) {
        const name = `"${schema.name.replace(/"/g, '""')}"."${table.name.replace(/"/g, '""')}"`;
        const count = database.query(`SELECT count(*) AS n FROM ${name}`)[0].n;
        lines.push(`${schema.name}.${table.name}: ${count} rows`);
    }
writeFile(`${target}.txt`, lines.join("\n") + "\n");
lines.forEach(line => console.log(line));

const days = new Set(database.query("SELECT file FROM glob($1)", [`${folder}/*.sql`])
    .map(row => row.file.split("/").pop().slice(0, -4)).filter(day => /^\d{4}-\d{2}-\d{2}$/.test(day)));
const old = Array.from(days).sort().slice(0, -Number(keep || 7));
if (old.length)
    console.log("no longer needed:", old.join(", "));
database.close();
