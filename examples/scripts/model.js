// SPDX-License-Identifier: GPL-3.0-or-later
// A table model of one's own: the rows are worked out when they are looked at.
//   orbis script examples/scripts/model.js
class Powers extends qt.QAbstractItemModel {
    rowCount(parent) { return parent.isValid ? 0 : 1000; }
    columnCount() { return 3; }
    data(index, role) {
        if (role === 0)
            return Math.pow(index.row, index.column + 1);
        return role === 7 ? 0x82 : null; // numbers stand on the right
    }
    headerData(section, orientation, role) {
        if (role !== 0)
            return null;
        return orientation === 1 ? ["n", "n squared", "n cubed"][section] : section;
    }
}

const view = new qt.QTableView();
view.model = new Powers();
view.windowTitle = "Powers";
view.selectedRow = 12;
console.log("row", view.selectedRow, "holds", view.model.index(12, 2).data());
view.clicked.connect(index => console.log(index.row, index.column, index.data()));
if (script.args[0] !== "--try")
    view.show();
