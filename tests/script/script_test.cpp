// SPDX-License-Identifier: GPL-3.0-or-later
// Scripts as a person writes them, over the loaded driver.
#include "script/connect_scripts.h"
#include "script/script_engine.h"

#include "hf/connection.h"
#include "hf/connection_parameters.h"
#include "hf/database.h"
#include "hf/plugin.h"
#include "support/own_settings.h"
#include "weft/object_value.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

using orbis::ScriptEngine;

namespace {

class Scripts : public support::OwnSettings
{
protected:
    static rc::Ptr<HF::I_LConnectionFactory> Factory()
    {
        static const HF::LLoadedPlugin loaded = HF::LoadPlugin(QStringLiteral(ORBIS_PLUGIN_FILE));
        EXPECT_TRUE(loaded.plugin) << loaded.error.toStdString();
        return rc::Ptr<HF::I_LConnectionFactory>(loaded.plugin->GetConnectionFactories()[0]);
    }

    int Run(const QString& text, const QStringList& arguments = {})
    {
        m_out.clear();
        m_err.clear();
        ScriptEngine engine(Factory());
        engine.SetOutput([this](const QString& line) { m_out.append(line); },
                         [this](const QString& line) { m_err.append(line); });
        const int exitCode = engine.Run(text, "test.js", arguments);
        m_error = engine.get_LastError();
        return exitCode;
    }
    int RunExample(const QString& name, const QStringList& arguments)
    {
        QFile file(QStringLiteral(ORBIS_EXAMPLES) + "/" + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return Run(QString::fromUtf8(file.readAll()), arguments);
    }
    /// What an expression prints.
    QString Show(const QString& expression)
    {
        EXPECT_EQ(Run("console.log(" + expression + ")"), 0) << m_err.join("\n").toStdString();
        return m_out.join("\n");
    }

    QStringList m_out, m_err;
    orbis::ScriptError m_error;
};

} // namespace

TEST_F(Scripts, ExpressionsGiveWhatTheySay)
{
    const std::pair<const char*, const char*> rows[] = {
        {"new qt.QPoint( 100, 100 ).x", "100"},
        {"(() => { const p = new qt.QPoint(1, 2); p.x = 9; return [p.x, p.y]; })()", "[9, 2]"},
        {"new qt.QSize().width", "0"},
        {"new qt.QColor('red').name", "#ff0000"},
        {"qt.CheckState.Checked", "2"},
        {"qt.QMessageBox.StandardButton.Ok + ' ' + qt.QMessageBox.Ok", "1024 1024"},
        {"qt.QAbstractItemView['DragDropMode NoDragDrop'].DragOnly", "0"},
        {"new qt.QPushButton() instanceof qt.QAbstractButton", "true"},
        {"new qt.QPushButton() instanceof qt.QObject", "true"},
        {"(() => { const b = new qt.QPushButton(); b.text = 'a'; return b.text; })()", "a"},
        {"(() => { const b = new qt.QPushButton(); return b.property('checkable'); })()", "false"},
        {"(() => { const c = new qt.QComboBox(); c.addItems(['a', 'b']); c.addItem('c', {k: [1]}); "
         "return [c.count, c.itemData(2), c.findText('b')]; })()", "[3, {k: [1]}, 1]"},
        {"(() => { const o = new qt.QObject(); const c = new qt.QObject(o); c.setObjectName('n'); "
         "return o.findChild('n') === c && o.children[0] === c && c.parent === o; })()", "true"},
        {"(() => { const o = new qt.QObject(); o.setProperty('p', [1.5, 'x']); return o.property('p'); })()", "[1.5, \"x\"]"},
        {"(() => { const o = new qt.QObject(); return o.parent; })()", "null"},
        {"(() => { const l = new qt.QLabel(); l.text = 'from Qt'; l.setText('again'); return l.text; })()", "again"},
        {"(() => { const f = new qt.QFormLayout(new qt.QWidget()); f.invalidate(); return f.inherits('QLayout'); })()", "true"},
        {"new qt.QSize(1, 2).tryInto(qt.QSizeF).height", "2"},
        {"(() => { const o = new qt.QObject(); o.setProperty('p', {a: {b: [1, 2.5, null, true, {c: 'x'}]}, '1': 'one'}); "
         "return o.property('p'); })()", "{1: \"one\", a: {b: [1, 2.5, null, true, {c: \"x\"}]}}"},
        {"(() => { const o = new qt.QObject(); o.setProperty('p', new Map([[1, 'm']])); return o.property('p'); })()", "{1: \"m\"}"},
        {"(() => { const o = new qt.QObject(); o.setProperty('p', new Uint8Array([1, 2, 3]).subarray(1)); "
         "return o.property('p').byteLength; })()", "2"},
        {"(() => { const o = new qt.QObject(), f = x => x + 1; o.setProperty('p', f); return o.property('p')(1); })()", "2"},
        {"wait(Promise.resolve(4))", "4"},
        {"qt.QObject.tr('x')", "x"},
        {"qt.QLineEdit.prototype.setSelection.length >= 0", "true"},
    };
    for (const auto& [expression, text] : rows)
        EXPECT_EQ(Show(expression).toStdString(), text) << expression;
}

TEST_F(Scripts, MistakesAreErrorsThatAScriptCanCatch)
{
    const std::pair<const char*, const char*> rows[] = {
        {"new qt.QPoint('x')", "new QPoint: Integer expected, got String \"x\"."},
        {"new qt.QPoint(1, 2, 3)", "new QPoint: 0 to 2 arguments expected, 3 given."},
        {"new qt.QWidget().resize(1)", "QWidget.resize: 2 arguments expected, 1 given."},
        {"new qt.QPoint(2147483648)", "Integer overflow on cast of 2147483648 to int."},
        {"new qt.QAbstractButton()", "QAbstractButton: there is nothing to create by itself."},
        {"new qt.QLineEdit().text = 5", "QLineEdit.text: String expected, got Integer 5."},
        {"new qt.QLineEdit().selectedText = 'x'", "QLineEdit.selectedText"},
        {"qt.QWidget.prototype.show.call(new qt.QObject())", "QWidget expected, got QObject."},
        {"qt.QWidget.prototype.show.call({})", "QWidget.show: QWidget expected, got none."},
        {"new qt.QLabel().linkActivated.connect(5)", "QSignal.connect: Function expected, got Integer 5."},
        {"(() => { const o = new qt.QObject(); o.deleteLater(); sleep(20); o.setObjectName('x'); })()",
         "QObject.setObjectName: The QObject is gone."},
        {"(() => { const o = []; o[0] = o; new qt.QVariant(o); })()", "The value is nested too deep."},
        {"(function f() { f(); })()", "Maximum call stack size exceeded."},
        {"db.open('/no/such/folder/x.db')", "does not exist"},
        {"db.create(':memory:').query('SELEC 1')", "syntax error"},
        {"(() => { const d = db.create(':memory:'); d.close(); d.query('SELECT 1'); })()", "The database is closed."},
        {"wait(Promise.reject(new Error('late')))", "late"},
        {"new qt.QPoint(1.5)", "Integer expected, got Float 1.5."},
        {"new qt.QPoint(NaN)", "Integer expected, got Float nan."},
        {"new qt.QPoint(null)", "Integer expected, got none."},
        {"qt.QWidget.prototype.show.call({ __h: new qt.QWidget() })", "QWidget.show: QWidget expected, got none."},
        {"new qt.QObject().setProperty('p', { get a() { throw new Error('in the getter') } })", "in the getter"},
        {"const huge = []; huge.length = 4294967295; new qt.QVariant(huge)", "The array is too long."},
        {"new qt.QComboBox().addItems(['x', 5])", "String expected, got Integer 5."},
        {"new qt.QSignal(new qt.QObject(), 'nothing()')", "QObject has no signal \"nothing()\"."},
        {"class A extends qt.QLabel { sizeHint() { const s = this.sizeHint(); return s; } } new A().sizeHint()",
         "Maximum call stack size exceeded."},
        // Through native code, where hooks and slots stand between.
        {"const b = new qt.QPushButton(); b.clicked.connect(() => b.click()); b.click()", "The calls are nested too deep."},
        {"let n = 0; class O extends qt.QObject { event(e) { this.setProperty('p', ++n); this.setProperty('q', ++n); return true; } } "
         "new O().setProperty('p', 0)",
         "The calls are nested too deep."},
        {"db.open(5)", "db.open: String expected, got number."},
        {"db.create(':memory:').query()", "query: String expected, got undefined."},
        {"db.create(':memory:').query('SELECT $1', 5)", "The binds are to be an array."},
        {"db.create(':memory:').query('SELECT $1', [{}])", "A HashMap cannot be bound to a parameter."},
        {"db.create(':memory:').query('SELECT $1, $2', [1])", "Values were not provided"},
        {"db.create(':memory:').tree.find('main/none')", "There is no \"none\" in \"main/none\"."},
        {"readFile('/no/such/file')", "cannot read"},
    };
    for (const auto& [statement, text] : rows) {
        EXPECT_EQ(Run(QString("try { %1; console.log('no error') } catch (e) { console.log(e.message) }").arg(statement)), 0)
            << m_err.join("\n").toStdString();
        EXPECT_TRUE(m_out.join("\n").contains(text)) << statement << " gives " << m_out.join("\n").toStdString();
    }
}

TEST_F(Scripts, UncaughtErrorsTellFileAndLine)
{
    EXPECT_EQ(Run("console.log(1);\n\nnew qt.QPoint('x');"), 1);
    EXPECT_EQ(m_err, QStringList{"test.js:3: TypeError: new QPoint: Integer expected, got String \"x\"."});
    EXPECT_EQ(Run("let x = ;"), 1);
    EXPECT_EQ(m_error.line, 1);
    EXPECT_EQ(Run("\nthrow 'words'"), 1);
    EXPECT_EQ(m_error.line, 2);
    // In a slot, a timer and a hook, where the rest goes on.
    EXPECT_EQ(Run("const b = new qt.QPushButton();\nb.clicked.connect(() => { throw new Error('in slot') });\n"
                  "b.click(); console.log('on')"), 1);
    EXPECT_TRUE(m_err.join("").contains("in slot"));
    EXPECT_EQ(m_out, QStringList{"on"});
    EXPECT_EQ(Run("setTimeout(() => { throw new Error('in timer') }, 1)"), 1);
    EXPECT_TRUE(m_err.join("").contains("in timer"));
    // In a promise that nobody listens to, and in none that somebody does.
    for (const char* text : {"\nPromise.reject(new Error('lost'))", "\nPromise.resolve(1).then(() => { throw new Error('lost') })",
                             "\nnew Promise((done, failed) => setTimeout(() => failed(new Error('lost')), 1))"}) {
        EXPECT_EQ(Run(text), 1) << text;
        EXPECT_EQ(m_err, QStringList{"test.js:2: Error: lost"}) << text;
    }
    EXPECT_EQ(Run("Promise.reject(new Error('x')).catch(e => console.log(e.message)); const p = Promise.reject(1); p.then(1, () => {});"
                  "Promise.all([Promise.resolve(1), new Promise(done => setTimeout(() => done(2), 1))]).then(a => console.log(a));"
                  "console.log(Promise.resolve(1) instanceof Promise); try { wait(Promise.reject(3)) } catch (e) { console.log(e) }"),
              0) << m_err.join("\n").toStdString();
    EXPECT_EQ(m_out.size(), 4) << m_out.join("\n").toStdString();
    EXPECT_EQ(Run("exit(7); console.log('never')"), 7);
    EXPECT_TRUE(m_out.isEmpty());
}

TEST_F(Scripts, SignalsConnectAndDisconnect)
{
    EXPECT_EQ(Run(R"JS(
        const b = new qt.QPushButton(), seen = [];
        b.checkable = true;
        const f = checked => seen.push(checked);
        b.clicked.connect(f);
        const c = b.toggled.connect(function () { seen.push(arguments.length); });
        b.click();
        b.clicked.disconnect(f);
        b.click();
        c.disconnect();
        b.click();
        console.log(seen, c.isEmpty);
        const e = new qt.QLineEdit(), l = new qt.QLabel();
        qt.QObject.connect(e, 'textChanged', l, 'setText');
        e.text = 'x';
        console.log(l.text);
        l.installEventFilter((object, event) => { if (event.type === 5000) seen.push(object === l); return false; });
    )JS"), 0) << m_err.join("\n").toStdString();
    EXPECT_EQ(m_out, QStringList({"[1, true, 1] true", "x"}));
}

TEST_F(Scripts, ClassesOverrideHooks)
{
    EXPECT_EQ(Run(R"JS(
        class MyLabel extends qt.QLabel {
            constructor(...args) { super(...args); this.types = []; }
            event(e) { this.types.push(e.type); this.kept = e; return super.event(e); }
            timerEvent(e) { this.fired = e.timerId; this.killTimer(e.timerId); }
            sizeHint() { return new qt.QSize(77, 33); }
        }
        class Deeper extends MyLabel { sizeHint() { return new qt.QSize(super.sizeHint().width + 1, 1); } }
        const l = new MyLabel(), d = new Deeper();
        console.log(l instanceof MyLabel, l.sizeHint().width, d.sizeHint().width);
        const w = new qt.QWidget(); const box = new qt.QBoxLayout(w);
        box.addWidget(d);
        w.show(); sleep(30);
        console.log(d.types.length > 0, w.sizeHint().width > 77);
        try { d.kept.type } catch (e) { console.log(e.message) }
        const id = l.startTimer(1); sleep(50);
        console.log(l.fired === id);
        class Promising extends qt.QObject {
            event(e) { return e.type === 43 ? false : new Promise(done => setTimeout(() => done(true), 1)); }
        }
        const p = new Promising();
        console.log(p.event({}) instanceof Promise);
        w.close();
    )JS"), 0) << m_err.join("\n").toStdString();
    EXPECT_EQ(m_out, QStringList({"true 77 78", "true true", "QEvent.type: The event is over.", "true", "true"}));
}

TEST_F(Scripts, NothingLeaksAndNothingDangles)
{
    Run("1"); // what is made once
    const auto before = weft::internal::object_value::live_count();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Run(R"JS(
            for (let i = 0; i < 50; ++i) {
                const w = new qt.QWidget(), b = new qt.QPushButton(w);
                b.clicked.connect(() => { b.text = "again"; w.show; });
                class Own extends qt.QLabel { event(e) { return super.event(e); } }
                const o = new Own(w);
                o.text = "x";
            }
        )JS"), 0) << m_err.join("\n").toStdString();
    // A filter whose object is collected says nothing any more.
    EXPECT_EQ(Run(R"JS(
        for (let i = 0; i < 2000; ++i) {
            const o = new qt.QObject();
            o.installEventFilter((object, event) => event.type === 12345);
            o.setProperty("a", i);
        }
        sleep(50);
    )JS"), 0) << m_err.join("\n").toStdString();
    EXPECT_LE(weft::internal::object_value::live_count(), before + 8);
    for (QWidget* widget : QApplication::topLevelWidgets())
        ADD_FAILURE() << widget->metaObject()->className();
}

TEST_F(Scripts, DatabasesGiveRowsAndTree)
{
    EXPECT_EQ(Run(R"JS(
        const d = db.create(":memory:");
        console.log(d.execute("CREATE TABLE t(i BIGINT, s VARCHAR, b BLOB, f DOUBLE, ok BOOLEAN, dt DATE)"));
        console.log(d.execute("INSERT INTO t VALUES ($1, $2, $3, $4, $5, '2024-02-29')", [9007199254740993, "é'", null, 1.5, true]));
        d.execute("INSERT INTO t VALUES (9223372036854775807, NULL, 'ab'::BLOB, -0.0, false, NULL)");
        const rows = d.query("SELECT * FROM t ORDER BY f DESC");
        console.log(rows[0].s, rows[0].f, rows[0].ok, rows[0].b, rows[0].dt);
        console.log(rows[1].i, rows[1].b.byteLength, rows[1].s);
        console.log(d.query("SELECT 1 AS a, 2 AS a"));
        const t = d.tree.find("main/t");
        console.log(t.kind, t.name, t.children("field").map(f => f.name), t.properties !== null);
        console.log(db.connections.length > 0, d.connection.databases.length > 0, d.isOpen);
    )JS"), 0) << m_err.join("\n").toStdString();
    ASSERT_EQ(m_out.size(), 7) << m_out.join("\n").toStdString();
    EXPECT_EQ(m_out[2], "é' 1.5 true null 2024-02-29");
    EXPECT_EQ(m_out[3], "9223372036854775807 2 null");
    EXPECT_EQ(m_out[5], "table t [\"i\", \"s\", \"b\", \"f\", \"ok\", \"dt\"] true");
    EXPECT_EQ(m_out[6], "true true true");
}

TEST_F(Scripts, DumpsComeBack)
{
    QTemporaryDir folder;
    EXPECT_EQ(Run(R"JS(
        const d = db.create(":memory:");
        d.execute("CREATE TABLE t(i INTEGER, s VARCHAR); INSERT INTO t VALUES (1, 'a''b'), (2, NULL)");
        d.dump(script.args[0], { data: "both" });
        const e = db.create(":memory:");
        e.load(script.args[0]);
        console.log(e.query("SELECT * FROM t ORDER BY i"));
        try { e.load("/no/such/file.sql"); } catch (error) { console.log("refused"); }
        try { e.dump(script.args[0], { data: "x" }); } catch (error) { console.log(error.message); }
        try { e.dump(script.args[0], { encoding: "x" }); } catch (error) { console.log(error.message); }
        writeFile(script.args[0], "CREATE TABLE a(i INTEGER);\nINSERT INTO b VALUES (1);\nCREATE TABLE c(i INTEGER);");
        try { e.load(script.args[0]); } catch (error) { console.log(error.message.split(":")[0]); }
        console.log(e.tree.find("main").children("table").map(t => t.name));
    )JS", {folder.filePath("d.sql")}), 0) << m_err.join("\n").toStdString();
    EXPECT_EQ(m_out, QStringList({"[{i: 1, s: \"a'b\"}, {i: 2, s: null}]", "refused",
                                  "dump: \"x\" is none of data, structure, both.", "dump: \"x\" is no known encoding.",
                                  "1 of 3 statements failed, the first in line 2", "[\"a\", \"c\", \"t\"]"}));
}

TEST_F(Scripts, AnEndlessLoopIsStopped)
{
    for (const char* text : {"for (;;) {}", "for (;;) { try { new qt.QPoint('x') } catch (e) {} }", "sleep(60000)",
                             "db.create(':memory:').query('SELECT count(*) FROM range(100000000000) a, range(1000) b')",
                             "new qt.QWidget().show()"}) {
        ScriptEngine engine(Factory());
        std::unique_ptr<QThread> stopper(QThread::create([&] {
            QThread::msleep(150);
            engine.Stop();
        }));
        stopper->start();
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(engine.Run(text, "loop.js", {}), 1) << text;
        EXPECT_LT(timer.elapsed(), 20000) << text;
        stopper->wait();
    }
}

TEST_F(Scripts, SilenceBeyondTheTimeLimitEndsAScript)
{
    const std::pair<const char*, int> rows[] = {
        // The engine tells no line of what it interrupts, but who called it is known.
        {"let i = 0;\n\nwhile (true) { ++i; }", 0},
        {"setTimeout(() => {\n for (;;) { try { for (;;) {} } catch (e) {} } }, 1)", 0},
        {"const b = new qt.QPushButton();\nb.clicked.connect(() => {\n for (;;) {} });\nb.click(); console.log('not reached')", 4},
        {"class L extends qt.QLabel { sizeHint() {\n for (;;) {} } }\nconst l = new L(); l.show(); sleep(5000);", 3},
        {"Promise.resolve(1).then(() => { for (;;) {} }); new qt.QWidget().show()", 0},
    };
    for (const auto& [text, line] : rows) {
        ScriptEngine engine(Factory());
        QStringList errors, output;
        engine.SetOutput([&](const QString& one) { output.append(one); }, [&](const QString& one) { errors.append(one); });
        engine.SetTimeLimit(300);
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(engine.Run(text, "loop.js", {}), 1) << text;
        EXPECT_LT(timer.elapsed(), 15000) << text;
        EXPECT_TRUE(engine.IsTimedOut()) << text;
        ASSERT_EQ(errors.size(), 1) << text << ": " << errors.join("\n").toStdString();
        EXPECT_TRUE(errors[0].contains("did not return to the event loop for 0.3 s")) << errors[0].toStdString();
        EXPECT_EQ(engine.get_LastError().line, line) << text;
        EXPECT_EQ(engine.get_LastError().file, "loop.js");
        EXPECT_TRUE(output.isEmpty());
    }
    // Waiting with the loop turning is no silence.
    ScriptEngine engine(Factory());
    engine.SetTimeLimit(2000);
    EXPECT_EQ(engine.Run("sleep(2600)", "wait.js", {}), 0)
        << engine.get_LastError().message.toStdString();
}

TEST_F(Scripts, TheProgramsDatabasesStayOpen)
{
    const rc::Ref<HF::I_LConnectionFactory> factory(Factory());
    const auto connection = factory->Connect(factory->CreateHandler()).Force().Connection;
    ASSERT_TRUE(connection);
    QTemporaryDir folder;
    const QString path = folder.filePath("own.duckdb");
    const rc::Ptr<HF::I_LDatabase> own = connection->CreateDatabase(path, {}).Force();
    ASSERT_TRUE(own);
    {
        ScriptEngine engine(Factory());
        engine.SetOutput([this](const QString& line) { m_out.append(line); }, [this](const QString& line) { m_err.append(line); });
        engine.SetCurrentDatabase(own);
        EXPECT_EQ(engine.Run(R"JS(
            db.current.execute("CREATE TABLE t AS SELECT 1 AS a");
            const same = db.open(script.args[0]), mine = db.create(":memory:");
            console.log(same.query("SELECT a FROM t"));
            try { same.close(); } catch (e) { console.log(e.message); }
            mine.close();
            console.log(mine.isOpen, same.isOpen);
            db.create(":memory:");
        )JS", "own.js", {path}), 0) << m_err.join("\n").toStdString();
    }
    EXPECT_EQ(m_out, QStringList({"[{a: 1}]", "close: \"own\" is not of this script.", "false true"}));
    EXPECT_EQ(connection->get_Databases().size(), 1) << "what the script opened is closed with it";
    EXPECT_TRUE(own->Close().Force());
}

TEST_F(Scripts, ConnectionsRunTheirScripts)
{
    QTemporaryDir folder;
    QStringList lines;
    const auto script = [&](const QString& text) {
        QFile file(folder.filePath("s.js"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
        return weft::String(file.fileName());
    };
    const rc::Ref<HF::I_LConnectionFactory> factory(Factory());
    const orbis::ConnectScripts scripts(factory, [&](const QString& line, bool) { lines.append(line); });
    HF::LConnectionParameters parameters;
    parameters.Location = weft::String(folder.filePath("x.duckdb"));
    parameters.AccessToken = weft::String("secret");

    // Before: the record may be changed, by what fits.
    parameters.PreScript = script("console.log(Object.keys(parameters).length); parameters.location += '2'; parameters.readOnly = true");
    EXPECT_FALSE(parameters.RunPreScript());
    EXPECT_EQ(parameters.Location.ToQString(), folder.filePath("x.duckdb2"));
    EXPECT_TRUE(parameters.ReadOnly);
    EXPECT_EQ(lines, QStringList{"6"});
    const std::pair<const char*, const char*> failures[] = {
        {"\nthrow new Error('no')", "s.js:2: Error: no"},
        {"parameters.location = 5", "\"parameters.location\" is not what it was."},
        {"parameters.accessToken = null", "\"parameters.accessToken\" is not what it was."},
        {"parameters = 'x'", "\"parameters\" is not what it was."},
        {"parameters.readOnly = 'no'", "\"parameters.readOnly\" is not what it was."},
        {"exit(4)", "ended with 4."},
        {"let x = ;", "s.js:1: SyntaxError"},
    };
    for (const auto& [text, words] : failures) {
        parameters.PreScript = script(QStringLiteral("parameters.userAgent = 'changed';") + text);
        const std::optional<weft::Error> error = parameters.RunPreScript();
        ASSERT_TRUE(error) << text;
        EXPECT_TRUE(error->message().ToQString().contains(words)) << error->message().ToQString().toStdString();
        EXPECT_FALSE(error->message().ToQString().contains("secret"));
        EXPECT_EQ(parameters.UserAgent.ToQString(), "") << "a script that failed changes nothing";
    }

    // From a worker, through the driver, and after it.
    lines.clear();
    HF::LConnectionParameters opening;
    opening.Location = weft::String("elsewhere");
    opening.PreScript = script("parameters.location = ':memory:'; console.log(typeof database)");
    const rc::Ref<HF::I_LConnectionHandler> handler = factory->CreateHandler();
    bool opened = false;
    std::unique_ptr<QThread> worker(QThread::create([&] { opened = handler->Open(opening).Force(); }));
    worker->start();
    while (!worker->wait(1))
        QCoreApplication::processEvents();
    ASSERT_TRUE(opened) << handler->GetLastError().toStdString();
    EXPECT_EQ(lines, QStringList{"undefined"});
    const rc::Ptr<HF::I_LDatabase> database = factory->Connect(handler).Force().Database;
    ASSERT_TRUE(database);
    EXPECT_EQ(database->get_Path(), ":memory:");
    opening.PostScript = script("console.log(database.query('SELECT 1 AS a'), db.current.name === database.name, connection !== null)");
    opening.RunPostScript(database->get_Connection(), database);
    opening.PostScript = script("console.log(database)");
    opening.RunPostScript(database->get_Connection(), nullptr);
    EXPECT_EQ(lines, QStringList({"undefined", "[{a: 1}] true true", "null"}));
    EXPECT_TRUE(database->Close().Force());
}

TEST_F(Scripts, TwoScriptsKeepTheirErrorsApart)
{
    QStringList first, second;
    ScriptEngine a(Factory()), b(Factory());
    a.SetOutput({}, [&](const QString& line) { first.append(line); });
    b.SetOutput({}, [&](const QString& line) { second.append(line); });
    a.Begin("const t = new qt.QPushButton(); t.show();\n"
            "t.clicked.connect(() => { throw new Error('of a') })", "a.js", {});
    b.Begin("setTimeout(() => {}, 60000)", "b.js", {});
    EXPECT_FALSE(a.IsFinished());
    EXPECT_FALSE(b.IsFinished());
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* button = qobject_cast<QPushButton*>(widget))
            button->click();
    EXPECT_EQ(first, QStringList{"a.js:2: clicked: Error: of a"});
    EXPECT_TRUE(second.isEmpty());
    b.Stop();
    EXPECT_TRUE(b.IsFinished());
    EXPECT_EQ(b.End(), 1);
    EXPECT_FALSE(a.IsFinished());
    a.Stop();
    EXPECT_EQ(a.End(), 1);
}

TEST_F(Scripts, ExamplesRun)
{
    EXPECT_EQ(RunExample("form.js", {"", "--try"}), 0) << m_err.join("\n").toStdString();
    EXPECT_EQ(m_out, QStringList({"3 found", "apple: 2 found, the first is apple"}));
    EXPECT_EQ(RunExample("model.js", {"--try"}), 0) << m_err.join("\n").toStdString();
    EXPECT_EQ(m_out, QStringList{"row 12 holds 1728"});
    QTemporaryDir folder;
    const QString database = folder.filePath("shop.db");
    ASSERT_EQ(Run("const d = db.create(script.args[0]); d.execute('CREATE TABLE \"a b\" AS SELECT * FROM range(5)')", {database}), 0)
        << m_err.join("\n").toStdString();
    EXPECT_EQ(RunExample("nightly-dump.js", {}), 2);
    EXPECT_EQ(RunExample("nightly-dump.js", {database, folder.path()}), 0) << m_err.join("\n").toStdString();
    EXPECT_EQ(m_out, QStringList{"main.a b: 5 rows"});
    EXPECT_TRUE(QFile::exists(folder.filePath(QDateTime::currentDateTimeUtc().date().toString(Qt::ISODate) + ".sql")));
}
