// SPDX-License-Identifier: GPL-3.0-or-later
// A small form over a query: a person types a part of a name, the table shows
// the rows that have it.
//   orbis script examples/scripts/form.js [DATABASE]
const database = script.args[0] ? db.open(script.args[0], { readOnly: true }) : db.create(":memory:");
if (!script.args[0])
    database.execute("CREATE TABLE fruit AS SELECT * FROM (VALUES ('apple', 3), ('pear', 2), ('pineapple', 7)) t(name, amount)");

const window = new qt.QWidget();
window.windowTitle = "Stock";
const search = new qt.QLineEdit();
search.placeholderText = "Name";
const table = new qt.QTableWidget();
const status = new qt.QLabel();
const layout = new qt.QBoxLayout(window);
layout.addWidget(search);
layout.addWidget(table, 1);
layout.addWidget(status);

function refresh() {
    const rows = database.query("SELECT name, amount FROM fruit WHERE contains(name, $1) ORDER BY name", [search.text]);
    table.rowCount = rows.length;
    table.columnCount = 2;
    table.setHorizontalHeaderLabels(["Name", "Amount"]);
    rows.forEach((row, i) => {
        table.item(i, 0).text = row.name;
        table.item(i, 1).text = String(row.amount);
    });
    status.text = `${rows.length} found`;
}

search.textChanged.connect(refresh);
refresh();
console.log(status.text);

if (script.args[1] === "--try") {
    // Types for you, and ends.
    search.insert("apple");
    console.log(`${search.text}: ${status.text}, the first is ${table.item(0, 0).text}`);
} else {
    window.show();
}
