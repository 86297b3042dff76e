<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>ConnectDialog</name>
    <message>
        <source>Open read-only</source>
        <translation>Schreibgeschützt öffnen</translation>
    </message>
    <message>
        <source>Connect to a Database</source>
        <translation>Mit einer Datenbank verbinden</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Run scripts</source>
        <translation>Skripte ausführen</translation>
    </message>
    <message>
        <source>Before connecting:</source>
        <translation>Vor dem Verbinden:</translation>
    </message>
    <message>
        <source>After connecting:</source>
        <translation>Nach dem Verbinden:</translation>
    </message>
    <message>
        <source>Select...</source>
        <translation>Auswählen...</translation>
    </message>
    <message>
        <source>Open Script</source>
        <translation>Skript öffnen</translation>
    </message>
    <message>
        <source>Scripts</source>
        <translation>Skripte</translation>
    </message>
    <message>
        <source>All Files</source>
        <translation>Alle Dateien</translation>
    </message>
</context>
<context>
    <name>DataTab</name>
    <message>
        <source>Save Changes</source>
        <translation>Änderungen speichern</translation>
    </message>
    <message>
        <source>Preview Changes...</source>
        <translation>Änderungen ansehen ...</translation>
    </message>
    <message>
        <source>Take Back</source>
        <translation>Zurücknehmen</translation>
    </message>
    <message>
        <source>Discard All Changes</source>
        <translation>Alle Änderungen verwerfen</translation>
    </message>
    <message>
        <source>Add Row</source>
        <translation>Zeile hinzufügen</translation>
    </message>
    <message>
        <source>Delete Rows</source>
        <translation>Zeilen löschen</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>Exportieren ...</translation>
    </message>
    <message>
        <source>Filter: a condition such as  price &gt; 10 AND name LIKE &apos;A%&apos;</source>
        <translation>Filter: eine Bedingung wie  preis &gt; 10 AND name LIKE &apos;A%&apos;</translation>
    </message>
    <message>
        <source>%1 rows written</source>
        <translation>%1 Zeilen geschrieben</translation>
    </message>
    <message>
        <source>%1 rows</source>
        <translation>%1 Zeilen</translation>
    </message>
    <message>
        <source>saving...</source>
        <translation>wird gespeichert ...</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen ...</translation>
    </message>
    <message>
        <source>%1 rows with changes that are not saved</source>
        <translation>%1 Zeilen mit ungespeicherten Änderungen</translation>
    </message>
    <message>
        <source>There is no single change to take back; all can be discarded.</source>
        <translation>Es gibt keine einzelne Änderung zurückzunehmen; alle lassen sich verwerfen.</translation>
    </message>
    <message>
        <source>The table is gone.</source>
        <translation>Die Tabelle gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>Changes as SQL</source>
        <translation>Änderungen als SQL</translation>
    </message>
    <message>
        <source>They run in one transaction; each has to find exactly one row.</source>
        <translation>Sie laufen in einer Transaktion; jede muss genau eine Zeile finden.</translation>
    </message>
    <message>
        <source>Row Id</source>
        <translation>Zeilennummer</translation>
    </message>
    <message>
        <source>Shows the engine&apos;s number of each row</source>
        <translation>Zeigt die Nummer, die die Engine jeder Zeile gibt</translation>
    </message>
    <message>
        <source>Generated</source>
        <translation>Generierte</translation>
    </message>
    <message>
        <source>Shows the generated columns</source>
        <translation>Zeigt die generierten Spalten</translation>
    </message>
</context>
<context>
    <name>DesignPartsModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Not Null</source>
        <translation>Nicht NULL</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>Unique</source>
        <translation>Eindeutig</translation>
    </message>
    <message>
        <source>Default / Generated as</source>
        <translation>Vorgabe / berechnet als</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Expression</source>
        <translation>Ausdruck</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Refers to</source>
        <translation>Verweist auf</translation>
    </message>
    <message>
        <source>Columns there</source>
        <translation>Spalten dort</translation>
    </message>
</context>
<context>
    <name>DesignPartsPage</name>
    <message>
        <source>Drop</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
    </message>
</context>
<context>
    <name>DesignPreview</name>
    <message>
        <source>Nothing has been changed. %1

%2</source>
        <translation>Es ist nichts geändert worden. %1

%2</translation>
    </message>
</context>
<context>
    <name>DesignSession</name>
    <message>
        <source>%1 is no longer there.</source>
        <translation>%1 gibt es nicht mehr.</translation>
    </message>
</context>
<context>
    <name>DesignSheet</name>
    <message>
        <source>Property</source>
        <translation>Eigenschaft</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Double click to choose.</source>
        <translation>Doppelklick zum Auswählen.</translation>
    </message>
</context>
<context>
    <name>DesignTab</name>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>Revert</source>
        <translation>Zurücknehmen</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message numerus="yes">
        <source>Applied: %n statements.</source>
        <translation>
            <numerusform>Angewendet: %n Anweisung.</numerusform>
            <numerusform>Angewendet: %n Anweisungen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Indexes</source>
        <translation>Indizes</translation>
    </message>
    <message>
        <source>Uniques</source>
        <translation>Eindeutigkeiten</translation>
    </message>
    <message>
        <source>Checks</source>
        <translation>Prüfungen</translation>
    </message>
    <message>
        <source>Foreign Keys</source>
        <translation>Fremdschlüssel</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Definition</source>
        <translation>Definition</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Working... </source>
        <translation>In Arbeit ... </translation>
    </message>
    <message>
        <source>Reading... </source>
        <translation>Wird gelesen ... </translation>
    </message>
    <message>
        <source>Not applied yet </source>
        <translation>Noch nicht angewendet </translation>
    </message>
    <message>
        <source>This cannot be taken back afterwards:</source>
        <translation>Das lässt sich danach nicht zurücknehmen:</translation>
    </message>
    <message>
        <source>%1 is being changed. Wait for the end, or stop it.</source>
        <translation>%1 wird gerade geändert. Warten Sie das Ende ab, oder halten Sie es an.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>%1 has changes that are not applied. Give them up?</source>
        <translation>%1 hat Änderungen, die nicht angewendet sind. Sollen sie verworfen werden?</translation>
    </message>
</context>
<context>
    <name>DumpWizard</name>
    <message>
        <source>Making the dump</source>
        <translation>Der Dump wird angelegt</translation>
    </message>
    <message>
        <source>Make Dump</source>
        <translation>Dump anlegen</translation>
    </message>
    <message>
        <source>What to dump, and where to</source>
        <translation>Was wohin gedumpt wird</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen...</translation>
    </message>
    <message>
        <source>Structure and data</source>
        <translation>Struktur und Daten</translation>
    </message>
    <message>
        <source>Structure only</source>
        <translation>Nur Struktur</translation>
    </message>
    <message>
        <source>Data only</source>
        <translation>Nur Daten</translation>
    </message>
    <message>
        <source>File:</source>
        <translation>Datei:</translation>
    </message>
    <message>
        <source>Contents:</source>
        <translation>Inhalt:</translation>
    </message>
    <message>
        <source>Encoding:</source>
        <translation>Kodierung:</translation>
    </message>
    <message>
        <source>Objects:</source>
        <translation>Objekte:</translation>
    </message>
    <message>
        <source>SQL files (*.sql);;All files (*)</source>
        <translation>SQL-Dateien (*.sql);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Give the dump a file.</source>
        <translation>Geben Sie dem Dump eine Datei.</translation>
    </message>
    <message>
        <source>Choose at least one object.</source>
        <translation>Wählen Sie mindestens ein Objekt.</translation>
    </message>
    <message>
        <source>Cannot write &quot;%1&quot;: %2</source>
        <translation>„%1“ lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>The dump could not be written: %1</source>
        <translation>Der Dump ließ sich nicht schreiben: %1</translation>
    </message>
    <message>
        <source>The dump was stopped. Nothing was written.</source>
        <translation>Der Dump wurde angehalten. Nichts wurde geschrieben.</translation>
    </message>
    <message>
        <source>The dump is in &quot;%1&quot;, %2.</source>
        <translation>Der Dump steht in „%1“, %2.</translation>
    </message>
    <message numerus="yes">
        <source>%1 row(s)</source>
        <translation>
            <numerusform>%1 Zeile</numerusform>
            <numerusform>%1 Zeilen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ExportDialog</name>
    <message>
        <source>Export Rows</source>
        <translation>Zeilen exportieren</translation>
    </message>
    <message>
        <source>Select...</source>
        <translation>Wählen ...</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>Format:</translation>
    </message>
    <message>
        <source>File:</source>
        <translation>Datei:</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>All Files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a folder.</source>
        <translation>„%1“ ist ein Ordner.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>%1 written, %2 a second</source>
        <translation>%1 geschrieben, %2 je Sekunde</translation>
    </message>
    <message>
        <source>Stopped; no file was written.</source>
        <translation>Angehalten; es wurde keine Datei geschrieben.</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; cannot be written.</source>
        <translation>Die Datei „%1“ kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>%1 rows, %2 in %3 s</source>
        <translation>%1 Zeilen, %2 in %3 s</translation>
    </message>
</context>
<context>
    <name>FilterHeader</name>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>A part of the text, or =, &lt;, &gt;, &lt;=, &gt;=, &lt;&gt; and a value; NULL or !NULL</source>
        <translation>Ein Teil des Textes, oder =, &lt;, &gt;, &lt;=, &gt;=, &lt;&gt; und ein Wert; NULL oder !NULL</translation>
    </message>
</context>
<context>
    <name>LoadWizard</name>
    <message>
        <source>Loading the dump</source>
        <translation>Der Dump wird geladen</translation>
    </message>
    <message>
        <source>Load Dump</source>
        <translation>Dump laden</translation>
    </message>
    <message>
        <source>What to load</source>
        <translation>Was geladen wird</translation>
    </message>
    <message>
        <source>The statements run in the database &quot;%1&quot;.</source>
        <translation>Die Anweisungen laufen in der Datenbank „%1“.</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen...</translation>
    </message>
    <message>
        <source>File:</source>
        <translation>Datei:</translation>
    </message>
    <message>
        <source>Encoding:</source>
        <translation>Kodierung:</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Statement</source>
        <translation>Anweisung</translation>
    </message>
    <message>
        <source>A double click opens the statement in an editor.</source>
        <translation>Ein Doppelklick öffnet die Anweisung in einem Editor.</translation>
    </message>
    <message>
        <source>SQL files (*.sql);;All files (*)</source>
        <translation>SQL-Dateien (*.sql);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>There is no file &quot;%1&quot;.</source>
        <translation>Es gibt keine Datei „%1“.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>The load was stopped.</source>
        <translation>Das Laden wurde angehalten.</translation>
    </message>
    <message numerus="yes">
        <source>%n statement(s) ran</source>
        <translation>
            <numerusform>%n Anweisung lief</numerusform>
            <numerusform>%n Anweisungen liefen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %n failed</source>
        <translation>
            <numerusform>, %n schlug fehl</numerusform>
            <numerusform>, %n schlugen fehl</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LogPanel</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>Datenbank</translation>
    </message>
    <message>
        <source>ms</source>
        <translation>ms</translation>
    </message>
    <message>
        <source>Statement</source>
        <translation>Anweisung</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Query Log</source>
        <translation>Abfrageprotokoll</translation>
    </message>
    <message>
        <source>Error Log</source>
        <translation>Fehlerprotokoll</translation>
    </message>
    <message>
        <source>Changed rows</source>
        <translation>Geänderte Zeilen</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Database Objects</source>
        <translation>Datenbankobjekte</translation>
    </message>
    <message>
        <source>Logs</source>
        <translation>Protokolle</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Opening %1...</source>
        <translation>%1 wird geöffnet ...</translation>
    </message>
    <message>
        <source>Open a database first.</source>
        <translation>Öffnen Sie zuerst eine Datenbank.</translation>
    </message>
    <message>
        <source>SQL</source>
        <translation>SQL</translation>
    </message>
    <message>
        <source>closed</source>
        <translation>geschlossen</translation>
    </message>
    <message>
        <source>%1 is not part of this version.</source>
        <translation>%1 gehört nicht zu dieser Version.</translation>
    </message>
    <message>
        <source>The CSV export</source>
        <translation>Der CSV-Export</translation>
    </message>
    <message>
        <source>The CSV import</source>
        <translation>Der CSV-Import</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>A query is still running in this tab. Stop it and close?</source>
        <translation>In diesem Reiter läuft noch eine Abfrage. Anhalten und schließen?</translation>
    </message>
    <message>
        <source>The text has changes that are not saved. Close it all the same?</source>
        <translation>Der Text hat ungespeicherte Änderungen. Trotzdem schließen?</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>A query is still running. Stop it and quit?</source>
        <translation>Eine Abfrage läuft noch. Anhalten und beenden?</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open Database...</source>
        <translation>Datenbank ö&amp;ffnen ...</translation>
    </message>
    <message>
        <source>&amp;Create Database...</source>
        <translation>Datenbank &amp;anlegen ...</translation>
    </message>
    <message>
        <source>New Database in &amp;Memory</source>
        <translation>Neue Datenbank im &amp;Speicher</translation>
    </message>
    <message>
        <source>Open S&amp;QL File...</source>
        <translation>S&amp;QL-Datei öffnen ...</translation>
    </message>
    <message>
        <source>&amp;Preferences...</source>
        <translation>&amp;Einstellungen ...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Query</source>
        <translation>&amp;Abfrage</translation>
    </message>
    <message>
        <source>New SQL &amp;Editor</source>
        <translation>Neuer SQL-&amp;Editor</translation>
    </message>
    <message>
        <source>&amp;Run All</source>
        <translation>Alles ausfüh&amp;ren</translation>
    </message>
    <message>
        <source>Run &amp;Selection or Statement at Cursor</source>
        <translation>Aus&amp;wahl oder Anweisung am Cursor ausführen</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>An&amp;halten</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>A&amp;nsicht</translation>
    </message>
    <message>
        <source>Show &amp;System Objects</source>
        <translation>&amp;Systemobjekte zeigen</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;About Orbis Studio</source>
        <translation>Über &amp;Orbis Studio</translation>
    </message>
    <message>
        <source>About Orbis Studio</source>
        <translation>Über Orbis Studio</translation>
    </message>
    <message>
        <source>Licensed under the GNU General Public License, version 3 or later.</source>
        <translation>Lizenziert unter der GNU General Public License, Version 3 oder später.</translation>
    </message>
    <message>
        <source>Main</source>
        <translation>Haupt</translation>
    </message>
    <message>
        <source>Open SQL File</source>
        <translation>SQL-Datei öffnen</translation>
    </message>
    <message>
        <source>SQL Files</source>
        <translation>SQL-Dateien</translation>
    </message>
    <message>
        <source>All Files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>Save SQL</source>
        <translation>SQL speichern</translation>
    </message>
    <message>
        <source>The table has changes that are not saved. Close it all the same?</source>
        <translation>Die Tabelle hat ungespeicherte Änderungen. Trotzdem schließen?</translation>
    </message>
    <message>
        <source>There are changes that are not saved. Quit all the same?</source>
        <translation>Es gibt ungespeicherte Änderungen. Trotzdem beenden?</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>A foreign key is made in the structure editor of its table.</source>
        <translation>Ein Fremdschlüssel wird im Struktureditor seiner Tabelle angelegt.</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>S&amp;cript</source>
        <translation>S&amp;kript</translation>
    </message>
    <message>
        <source>&amp;New Script</source>
        <translation>&amp;Neues Skript</translation>
    </message>
    <message>
        <source>&amp;Open Script...</source>
        <translation>Skript ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>Recent S&amp;cripts</source>
        <translation>&amp;Zuletzt verwendete Skripte</translation>
    </message>
    <message>
        <source>Clear List</source>
        <translation>Liste leeren</translation>
    </message>
    <message>
        <source>&amp;Run Script</source>
        <translation>Skript &amp;ausführen</translation>
    </message>
    <message>
        <source>S&amp;top Script</source>
        <translation>Skript a&amp;nhalten</translation>
    </message>
    <message>
        <source>Open Script</source>
        <translation>Skript öffnen</translation>
    </message>
    <message>
        <source>Scripts</source>
        <translation>Skripte</translation>
    </message>
    <message>
        <source>Save Script</source>
        <translation>Skript speichern</translation>
    </message>
    <message>
        <source>memory</source>
        <translation>Arbeitsspeicher</translation>
    </message>
    <message>
        <source>memory %1</source>
        <translation>Arbeitsspeicher %1</translation>
    </message>
    <message>
        <source>A query on &quot;%1&quot; is still running. Stop it and close?</source>
        <translation>Eine Abfrage auf „%1“ läuft noch. Anhalten und schließen?</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has changes that are not saved. Close it all the same?</source>
        <translation>„%1“ hat Änderungen, die nicht gespeichert sind. Trotzdem schließen?</translation>
    </message>
</context>
<context>
    <name>PreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Like the desktop</source>
        <translation>Wie der Desktop</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Appearance:</source>
        <translation>Erscheinungsbild:</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
</context>
<context>
    <name>PropertySheet</name>
    <message>
        <source>Property</source>
        <translation>Eigenschaft</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Select backup folder</source>
        <translation>Ordner für die Sicherung wählen</translation>
    </message>
    <message>
        <source>Backup</source>
        <translation>Sicherung</translation>
    </message>
    <message>
        <source>Show on Disk</source>
        <translation>Auf dem Datenträger zeigen</translation>
    </message>
    <message>
        <source>Create Schema</source>
        <translation>Schema anlegen</translation>
    </message>
    <message>
        <source>Enter a schema name:</source>
        <translation>Name des Schemas:</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Anlegen</translation>
    </message>
    <message>
        <source>Schema with such name already exists: %1</source>
        <translation>Ein Schema dieses Namens gibt es schon: %1</translation>
    </message>
    <message>
        <source>Name of schema cannot be empty!</source>
        <translation>Der Name des Schemas darf nicht leer sein!</translation>
    </message>
    <message>
        <source>Select All Schemas</source>
        <translation>Alle Schemas wählen</translation>
    </message>
    <message>
        <source>Deselect All Schemas</source>
        <translation>Alle Schemas abwählen</translation>
    </message>
    <message>
        <source>Default schemas</source>
        <translation>Standardschemas</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message numerus="yes">
        <source>%n schemas</source>
        <translation>
            <numerusform>%n Schema</numerusform>
            <numerusform>%n Schemas</numerusform>
        </translation>
    </message>
    <message>
        <source>Make dump of database &quot;%1&quot;</source>
        <translation>Datenbank „%1“ sichern</translation>
    </message>
    <message>
        <source>Argument Names</source>
        <translation>Argumentnamen</translation>
    </message>
    <message>
        <source>Function</source>
        <translation>Funktion</translation>
    </message>
    <message>
        <source>Function Body</source>
        <translation>Funktionsrumpf</translation>
    </message>
    <message>
        <source>Create Dump</source>
        <translation>Sicherung erstellen</translation>
    </message>
    <message>
        <source>Export to CSV</source>
        <translation>Nach CSV exportieren</translation>
    </message>
    <message>
        <source>Import from CSV</source>
        <translation>Aus CSV importieren</translation>
    </message>
    <message>
        <source>Select...</source>
        <translation>Wählen ...</translation>
    </message>
    <message>
        <source>Local File</source>
        <translation>Lokale Datei</translation>
    </message>
    <message>
        <source>MotherDuck</source>
        <translation>MotherDuck</translation>
    </message>
    <message>
        <source>Connection Method:</source>
        <translation>Verbindungsart:</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Pfad:</translation>
    </message>
    <message>
        <source>Database:</source>
        <translation>Datenbank:</translation>
    </message>
    <message>
        <source>Access Token:</source>
        <translation>Zugangstoken:</translation>
    </message>
    <message>
        <source>User Agent:</source>
        <translation>User-Agent:</translation>
    </message>
    <message>
        <source>Select path to a DuckDB database</source>
        <translation>Pfad einer DuckDB-Datenbank wählen</translation>
    </message>
    <message>
        <source>DuckDB Files</source>
        <translation>DuckDB-Dateien</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>The maximum memory of the system (e.g., 1GB). Expected units: KB, MB, GB, TB, KiB, MiB, GiB or TiB</source>
        <translation>Der höchste Speicherbedarf (z. B. 1GB). Einheiten: KB, MB, GB, TB, KiB, MiB, GiB oder TiB</translation>
    </message>
    <message>
        <source>DuckDB Engine Preferences</source>
        <translation>Einstellungen der DuckDB-Engine</translation>
    </message>
    <message>
        <source>Default database extension:</source>
        <translation>Standardendung für Datenbanken:</translation>
    </message>
    <message>
        <source>Threads:</source>
        <translation>Threads:</translation>
    </message>
    <message>
        <source>The number of total threads used by the system</source>
        <translation>Die Zahl aller benutzten Threads</translation>
    </message>
    <message>
        <source>Memory limit:</source>
        <translation>Speichergrenze:</translation>
    </message>
    <message>
        <source>Pivot limit:</source>
        <translation>Pivot-Grenze:</translation>
    </message>
    <message>
        <source>The maximum number of pivot columns in a pivot statement</source>
        <translation>Die höchste Zahl von Pivot-Spalten in einer PIVOT-Anweisung</translation>
    </message>
    <message>
        <source>Database Files</source>
        <translation>Datenbankdateien</translation>
    </message>
    <message>
        <source>All Files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>DuckDB %1 Engine</source>
        <translation>DuckDB-Engine %1</translation>
    </message>
    <message>
        <source>DuckDB Embedded Engine Version %1.
This connection is used for local DuckDB databases.</source>
        <translation>Eingebettete DuckDB-Engine, Version %1.
Diese Verbindung dient lokalen DuckDB-Datenbanken.</translation>
    </message>
    <message>
        <source>Database &apos;%1&apos; already exists!</source>
        <translation>Die Datenbank &apos;%1&apos; gibt es schon!</translation>
    </message>
    <message>
        <source>Recent DuckDB databases</source>
        <translation>Zuletzt benutzte DuckDB-Datenbanken</translation>
    </message>
    <message>
        <source>%1 instead of: %2</source>
        <translation>%1 statt: %2</translation>
    </message>
    <message>
        <source>Cannot delete the last field from table!</source>
        <translation>Das letzte Feld einer Tabelle kann nicht gelöscht werden!</translation>
    </message>
    <message>
        <source>Do you really want to delete field &quot;%1&quot;?</source>
        <translation>Möchten Sie das Feld „%1“ wirklich löschen?</translation>
    </message>
    <message>
        <source>Do you really want to delete method &quot;%1&quot;?</source>
        <translation>Möchten Sie die Methode „%1“ wirklich löschen?</translation>
    </message>
    <message numerus="yes">
        <source>Do you really want to delete %n fields?</source>
        <translation>
            <numerusform>Möchten Sie %n Feld wirklich löschen?</numerusform>
            <numerusform>Möchten Sie %n Felder wirklich löschen?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Do you really want to delete %n methods?</source>
        <translation>
            <numerusform>Möchten Sie %n Methode wirklich löschen?</numerusform>
            <numerusform>Möchten Sie %n Methoden wirklich löschen?</numerusform>
        </translation>
    </message>
    <message>
        <source>Cannot delete all fields from the table!</source>
        <translation>Es können nicht alle Felder der Tabelle gelöscht werden!</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Index Name:</source>
        <translation>Name des Index:</translation>
    </message>
    <message>
        <source>You need to reset &quot;Unique&quot; flag first!</source>
        <translation>Zuerst muss die Eigenschaft „Eindeutig“ zurückgenommen werden!</translation>
    </message>
    <message>
        <source>Do you really want to delete index &quot;%1&quot;?</source>
        <translation>Möchten Sie den Index „%1“ wirklich löschen?</translation>
    </message>
    <message>
        <source>Do you really want to delete indexes:
%1?</source>
        <translation>Möchten Sie diese Indizes wirklich löschen:
%1?</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Unbekannter Fehler</translation>
    </message>
    <message>
        <source>Create DuckDB Database</source>
        <translation>DuckDB-Datenbank anlegen</translation>
    </message>
    <message>
        <source>Disk</source>
        <translation>Datenträger</translation>
    </message>
    <message>
        <source>RAM</source>
        <translation>Arbeitsspeicher</translation>
    </message>
    <message>
        <source>Reset Settings</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Ort:</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Create a new DuckDB database</source>
        <translation>Eine neue DuckDB-Datenbank anlegen</translation>
    </message>
    <message>
        <source>Drop before restore</source>
        <translation>Vor dem Wiederherstellen löschen</translation>
    </message>
    <message>
        <source>Perform inserts in transaction</source>
        <translation>Zeilen in einer Transaktion einfügen</translation>
    </message>
    <message>
        <source>Multiple rows in INSERT statement</source>
        <translation>Mehrere Zeilen je INSERT-Anweisung</translation>
    </message>
    <message>
        <source>Write REPLACE statements rather than INSERT statements</source>
        <translation>REPLACE- statt INSERT-Anweisungen schreiben</translation>
    </message>
    <message>
        <source>New statement every:</source>
        <translation>Neue Anweisung alle:</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>KiB of data</source>
        <translation>KiB an Daten</translation>
    </message>
    <message>
        <source>Dump options</source>
        <translation>Optionen der Sicherung</translation>
    </message>
    <message>
        <source>Execute multiple dump statements</source>
        <translation>Mehrere Anweisungen zusammen ausführen</translation>
    </message>
    <message>
        <source>Stop on error</source>
        <translation>Bei einem Fehler anhalten</translation>
    </message>
    <message>
        <source>If TRUE, multiple statements from the dump file are sent for execution together which improves performance.</source>
        <translation>Wenn gesetzt, werden mehrere Anweisungen der Datei zusammen ausgeführt; das geht schneller.</translation>
    </message>
    <message>
        <source>If TRUE, the loading process stops on the first error.</source>
        <translation>Wenn gesetzt, endet das Laden beim ersten Fehler.</translation>
    </message>
    <message>
        <source>Load Dump Options</source>
        <translation>Optionen des Ladens</translation>
    </message>
    <message>
        <source>Open Database</source>
        <translation>Datenbank öffnen</translation>
    </message>
    <message>
        <source>Database Files (%1);;All Files (*)</source>
        <translation>Datenbankdateien (%1);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Open Database...</source>
        <translation>Datenbank öffnen ...</translation>
    </message>
    <message>
        <source>Load Dump...</source>
        <translation>Sicherung laden ...</translation>
    </message>
    <message>
        <source>Preferences...</source>
        <translation>Einstellungen ...</translation>
    </message>
    <message>
        <source>Script &quot;%1&quot; does not exist.</source>
        <translation>Das Skript „%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>Script &quot;%1&quot; cannot be run: there is no script runtime.</source>
        <translation>Das Skript „%1“ kann nicht laufen: Es gibt keine Skriptumgebung.</translation>
    </message>
    <message>
        <source>Open SQL Editor</source>
        <translation>SQL-Editor öffnen</translation>
    </message>
    <message>
        <source>Open Query Builder</source>
        <translation>Abfragegenerator öffnen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Virtual Links...</source>
        <translation>Virtuelle Verknüpfungen ...</translation>
    </message>
    <message>
        <source>Make Dump...</source>
        <translation>Sicherung erstellen ...</translation>
    </message>
    <message>
        <source>Delete Database...</source>
        <translation>Datenbank löschen ...</translation>
    </message>
    <message>
        <source>Do you really want to delete database &quot;%1&quot; and its files?</source>
        <translation>Möchten Sie die Datenbank „%1“ und ihre Dateien wirklich löschen?</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>SQL</source>
        <translation>SQL</translation>
    </message>
    <message>
        <source>Design</source>
        <translation>Entwurf</translation>
    </message>
    <message>
        <source>Open Data Editor</source>
        <translation>Dateneditor öffnen</translation>
    </message>
    <message>
        <source>Duplicate...</source>
        <translation>Duplizieren ...</translation>
    </message>
    <message>
        <source>Delete All Records...</source>
        <translation>Alle Datensätze löschen ...</translation>
    </message>
    <message>
        <source>Open View</source>
        <translation>Sicht öffnen</translation>
    </message>
    <message>
        <source>The plug-in &quot;%1&quot; does not exist.</source>
        <translation>Das Plug-in „%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>The plug-in &quot;%1&quot; cannot be started: %2</source>
        <translation>Das Plug-in „%1“ kann nicht gestartet werden: %2</translation>
    </message>
    <message>
        <source>The plug-in &quot;%1&quot; cannot be loaded: %2</source>
        <translation>Das Plug-in „%1“ kann nicht geladen werden: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a plug-in: it has no entry point.</source>
        <translation>„%1“ ist kein Plug-in: Es hat keinen Einstiegspunkt.</translation>
    </message>
    <message>
        <source>it gave nothing back.</source>
        <translation>Es gab nichts zurück.</translation>
    </message>
    <message>
        <source>unknown error</source>
        <translation>unbekannter Fehler</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>Collation</source>
        <translation>Sortierfolge</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Object ID</source>
        <translation>Objektnummer</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Key columns</source>
        <translation>Schlüsselspalten</translation>
    </message>
    <message>
        <source>Schema</source>
        <translation>Schema</translation>
    </message>
    <message>
        <source>Temporary</source>
        <translation>Temporär</translation>
    </message>
    <message>
        <source>Definition</source>
        <translation>Definition</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Unique</source>
        <translation>Eindeutig</translation>
    </message>
    <message>
        <source>Array size</source>
        <translation>Länge des Arrays</translation>
    </message>
    <message>
        <source>Element type</source>
        <translation>Elementtyp</translation>
    </message>
    <message>
        <source>Expression</source>
        <translation>Ausdruck</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Functions</source>
        <translation>Funktionen</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>Verknüpfungen</translation>
    </message>
    <message>
        <source>Sequences</source>
        <translation>Sequenzen</translation>
    </message>
    <message>
        <source>Schemas</source>
        <translation>Schemas</translation>
    </message>
    <message>
        <source>Tables</source>
        <translation>Tabellen</translation>
    </message>
    <message>
        <source>Views</source>
        <translation>Sichten</translation>
    </message>
    <message>
        <source>Type arguments</source>
        <translation>Typargumente</translation>
    </message>
    <message>
        <source>Indexed</source>
        <translation>Indiziert</translation>
    </message>
    <message>
        <source>Nullable</source>
        <translation>NULL erlaubt</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Precision</source>
        <translation>Stellen</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>Nachkommastellen</translation>
    </message>
    <message>
        <source>Argument count</source>
        <translation>Zahl der Argumente</translation>
    </message>
    <message>
        <source>Function type</source>
        <translation>Art der Funktion</translation>
    </message>
    <message>
        <source>Cardinality</source>
        <translation>Kardinalität</translation>
    </message>
    <message>
        <source>Link columns</source>
        <translation>Verknüpfte Spalten</translation>
    </message>
    <message>
        <source>Link table</source>
        <translation>Verknüpfende Tabelle</translation>
    </message>
    <message>
        <source>Link schema</source>
        <translation>Verknüpfendes Schema</translation>
    </message>
    <message>
        <source>Parent table</source>
        <translation>Elterntabelle</translation>
    </message>
    <message>
        <source>Parent schema</source>
        <translation>Elternschema</translation>
    </message>
    <message>
        <source>Generated as</source>
        <translation>Berechnet als</translation>
    </message>
    <message>
        <source>Cycle</source>
        <translation>Umlaufend</translation>
    </message>
    <message>
        <source>Last value</source>
        <translation>Letzter Wert</translation>
    </message>
    <message>
        <source>Increment</source>
        <translation>Schrittweite</translation>
    </message>
    <message>
        <source>Minimum</source>
        <translation>Kleinster Wert</translation>
    </message>
    <message>
        <source>Maximum</source>
        <translation>Größter Wert</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Checks</source>
        <translation>Prüfungen</translation>
    </message>
    <message>
        <source>Fields</source>
        <translation>Felder</translation>
    </message>
    <message>
        <source>Indexes</source>
        <translation>Indizes</translation>
    </message>
    <message>
        <source>Methods</source>
        <translation>Methoden</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Datensätze</translation>
    </message>
    <message>
        <source>Uniques</source>
        <translation>Eindeutigkeiten</translation>
    </message>
    <message>
        <source>Databases</source>
        <translation>Datenbanken</translation>
    </message>
    <message>
        <source>DuckDB Database</source>
        <translation>DuckDB-Datenbank</translation>
    </message>
    <message>
        <source>DuckDB Schema</source>
        <translation>DuckDB-Schema</translation>
    </message>
    <message>
        <source>waiting for the engine to stop, Ctrl-\ kills it</source>
        <translation>wartet auf das Ende der Anweisung, Strg-\ bricht hart ab</translation>
    </message>
    <message>
        <source>running for %1 s, Ctrl-C stops it</source>
        <translation>läuft seit %1 s, Strg-C hält an</translation>
    </message>
    <message>
        <source>a whole number from %1 to %2</source>
        <translation>eine ganze Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>true oder false</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>eine Zahl</translation>
    </message>
    <message>
        <source>a decimal number of at most 38 digits</source>
        <translation>eine Dezimalzahl mit höchstens 38 Ziffern</translation>
    </message>
    <message>
        <source>pairs of hexadecimal digits, or @FILE</source>
        <translation>Paare hexadezimaler Ziffern oder @DATEI</translation>
    </message>
    <message>
        <source>digits 0 and 1</source>
        <translation>Ziffern 0 und 1</translation>
    </message>
    <message>
        <source>a UUID</source>
        <translation>eine UUID</translation>
    </message>
    <message>
        <source>cannot read &quot;%1&quot;: %2</source>
        <translation>„%1“ kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>bind &quot;%1&quot;: null takes no value</source>
        <translation>Parameter „%1“: null hat keinen Wert</translation>
    </message>
    <message>
        <source>bind &quot;%1&quot;: write TYPE=VALUE</source>
        <translation>Parameter „%1“: Schreibweise TYP=WERT</translation>
    </message>
    <message>
        <source>bind &quot;%1&quot;: &quot;%2&quot; is not %3</source>
        <translation>Parameter „%1“: „%2“ ist nicht %3</translation>
    </message>
    <message>
        <source>bind &quot;%1&quot;: unknown type; types: %2</source>
        <translation>Parameter „%1“: unbekannter Typ; Typen: %2</translation>
    </message>
    <message>
        <source>Plug-in</source>
        <translation>Plug-in</translation>
    </message>
    <message>
        <source>Factory</source>
        <translation>Fabrik</translation>
    </message>
    <message>
        <source>Engine</source>
        <translation>Engine</translation>
    </message>
    <message>
        <source>Capabilities</source>
        <translation>Fähigkeiten</translation>
    </message>
    <message>
        <source>Field types</source>
        <translation>Feldtypen</translation>
    </message>
    <message>
        <source>Default field type</source>
        <translation>Standardfeldtyp</translation>
    </message>
    <message>
        <source>Statements</source>
        <translation>Anweisungen</translation>
    </message>
    <message>
        <source>Aggregates</source>
        <translation>Aggregate</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Schlüsselwörter</translation>
    </message>
    <message>
        <source>Templates</source>
        <translation>Vorlagen</translation>
    </message>
    <message>
        <source>unknown option --%1</source>
        <translation>unbekannte Option --%1</translation>
    </message>
    <message>
        <source>option --%1 takes no value</source>
        <translation>Option --%1 hat keinen Wert</translation>
    </message>
    <message>
        <source>unknown option %1</source>
        <translation>unbekannte Option %1</translation>
    </message>
    <message>
        <source>option --%1 needs a value: %2</source>
        <translation>Option --%1 braucht einen Wert: %2</translation>
    </message>
    <message>
        <source>option --%1 stands twice</source>
        <translation>Option --%1 steht zweimal</translation>
    </message>
    <message>
        <source>unknown command &quot;%1&quot;; commands: %2</source>
        <translation>unbekannter Befehl „%1“; Befehle: %2</translation>
    </message>
    <message>
        <source>no command; commands: %1</source>
        <translation>kein Befehl; Befehle: %1</translation>
    </message>
    <message>
        <source>too few arguments; usage: %1</source>
        <translation>zu wenige Argumente; Aufruf: %1</translation>
    </message>
    <message>
        <source>too many arguments, from &quot;%1&quot; on; usage: %2</source>
        <translation>zu viele Argumente, ab „%1“; Aufruf: %2</translation>
    </message>
    <message>
        <source>Usage: orbis COMMAND ...

Commands:
</source>
        <translation>Aufruf: orbis BEFEHL ...

Befehle:
</translation>
    </message>
    <message>
        <source>
Options of every command:
</source>
        <translation>
Optionen jedes Befehls:
</translation>
    </message>
    <message>
        <source>
&quot;orbis COMMAND --help&quot; tells more of a command.
A DATABASE is a path, &quot;:memory:&quot;, &quot;md:NAME&quot; or &quot;file:...?mode=memory&quot;.
Exit status: 0 done, 1 the engine said no, 2 wrong usage, 3 cannot open,
130 stopped by Ctrl-C.
</source>
        <translation>
„orbis BEFEHL --help“ sagt mehr zu einem Befehl.
Eine DATABASE ist ein Pfad, &quot;:memory:&quot;, &quot;md:NAME&quot; oder &quot;file:...?mode=memory&quot;.
Rückgabewert: 0 fertig, 1 die Engine lehnt ab, 2 falscher Aufruf,
3 lässt sich nicht öffnen, 130 mit Strg-C angehalten.
</translation>
    </message>
    <message>
        <source>Usage: orbis %1 %2</source>
        <translation>Aufruf: orbis %1 %2</translation>
    </message>
    <message>
        <source>
Options:
</source>
        <translation>
Optionen:
</translation>
    </message>
    <message>
        <source>a new database cannot be read-only</source>
        <translation>eine neue Datenbank kann nicht schreibgeschützt sein</translation>
    </message>
    <message>
        <source>the name of the database is empty</source>
        <translation>der Name der Datenbank ist leer</translation>
    </message>
    <message>
        <source>cannot create &quot;%1&quot;</source>
        <translation>„%1“ kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a folder</source>
        <translation>„%1“ ist kein Ordner</translation>
    </message>
    <message>
        <source>this database cannot be backed up</source>
        <translation>diese Datenbank kann nicht gesichert werden</translation>
    </message>
    <message>
        <source>unknown format &quot;%1&quot;; formats: %2</source>
        <translation>unbekanntes Format „%1“; Formate: %2</translation>
    </message>
    <message>
        <source>give either -c or a file, not both</source>
        <translation>entweder -c oder eine Datei, nicht beides</translation>
    </message>
    <message>
        <source>give the text by -c SQL, a file, or &quot;-&quot; for standard input</source>
        <translation>der Text kommt von -c SQL, einer Datei oder „-“ für die Standardeingabe</translation>
    </message>
    <message>
        <source>the statement did not run</source>
        <translation>die Anweisung ist nicht gelaufen</translation>
    </message>
    <message>
        <source>the database did not close cleanly</source>
        <translation>die Datenbank wurde nicht sauber geschlossen</translation>
    </message>
    <message>
        <source>there is no &quot;%1&quot; in %2 &quot;%3&quot;</source>
        <translation>in %2 „%3“ gibt es kein „%1“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is ambiguous: write %2:%1 or %3:%1</source>
        <translation>„%1“ ist mehrdeutig: Schreiben Sie %2:%1 oder %3:%1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a depth</source>
        <translation>„%1“ ist keine Tiefe</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a path; write schema/name/...</source>
        <translation>„%1“ ist kein Pfad; Schreibweise: schema/name/...</translation>
    </message>
    <message>
        <source>the driver (default: beside the program)</source>
        <translation>der Treiber (sonst: neben dem Programm)</translation>
    </message>
    <message>
        <source>another settings file</source>
        <translation>eine andere Einstellungsdatei</translation>
    </message>
    <message>
        <source>open the database for reading only</source>
        <translation>die Datenbank nur zum Lesen öffnen</translation>
    </message>
    <message>
        <source>show this help</source>
        <translation>diese Hilfe zeigen</translation>
    </message>
    <message>
        <source>show the version</source>
        <translation>die Version zeigen</translation>
    </message>
    <message>
        <source>as one JSON document</source>
        <translation>als ein JSON-Dokument</translation>
    </message>
    <message>
        <source>Tells of the plug-in, its factory and the engine.</source>
        <translation>Zeigt Plug-in, Fabrik und Engine.</translation>
    </message>
    <message>
        <source>Runs every statement of a text and prints the results.
The text comes from -c, a file or standard input. A text that does not parse
runs not at all; a statement that fails ends the run with exit status 1.</source>
        <translation>Führt jede Anweisung eines Textes aus und gibt die Ergebnisse aus.
Der Text kommt von -c, aus einer Datei oder von der Standardeingabe. Ein Text mit
Syntaxfehler läuft gar nicht; eine Anweisung mit Fehler beendet den Lauf mit Wert 1.</translation>
    </message>
    <message>
        <source>the text itself; several run one after another</source>
        <translation>der Text selbst; mehrere laufen nacheinander</translation>
    </message>
    <message>
        <source>value of the next parameter ($1, $2, ...) of each statement;
types: %1</source>
        <translation>Wert des nächsten Parameters ($1, $2, ...) jeder Anweisung;
Typen: %1</translation>
    </message>
    <message>
        <source>Makes a new, empty database.</source>
        <translation>Legt eine neue, leere Datenbank an.</translation>
    </message>
    <message>
        <source>Tells whether a location can be reached: exit status 0, otherwise 3.</source>
        <translation>Sagt, ob ein Ort erreichbar ist: Rückgabewert 0, sonst 3.</translation>
    </message>
    <message>
        <source>Copies the database into a folder, under its own file name.</source>
        <translation>Kopiert die Datenbank unter ihrem Dateinamen in einen Ordner.</translation>
    </message>
    <message>
        <source>Lists the names that a completion knows.</source>
        <translation>Listet die Namen, die die Vervollständigung kennt.</translation>
    </message>
    <message>
        <source>those of the engine itself instead</source>
        <translation>stattdessen die der Engine selbst</translation>
    </message>
    <message>
        <source>Shows the catalogue: schemas, tables, columns and all else, with their properties.
PATH is schema/name/..., each name with its kind and a colon in front where that
is needed (table:orders) and in double quotes where it holds &quot;/&quot; or &quot;:&quot;.</source>
        <translation>Zeigt den Katalog: Schemas, Tabellen, Spalten und alles andere, mit Eigenschaften.
PATH ist schema/name/..., jeder Name wo nötig mit seiner Art und Doppelpunkt davor
(table:orders) und in doppelten Anführungszeichen, wenn er &quot;/&quot; oder &quot;:&quot; enthält.</translation>
    </message>
    <message>
        <source>levels below the start; all without it</source>
        <translation>Ebenen unter dem Start; sonst alle</translation>
    </message>
    <message>
        <source>also the properties that cost a query each</source>
        <translation>auch die Eigenschaften, die je eine Abfrage kosten</translation>
    </message>
    <message>
        <source>also what is in the system schemas</source>
        <translation>auch den Inhalt der Systemschemas</translation>
    </message>
    <message>
        <source>the plug-in offers no DuckDB</source>
        <translation>das Plug-in bietet kein DuckDB</translation>
    </message>
    <message>
        <source>cannot open &quot;%1&quot;</source>
        <translation>„%1“ kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>cannot write the results: %1</source>
        <translation>die Ergebnisse können nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>argument %1 is not valid UTF-8</source>
        <translation>Argument %1 ist kein gültiges UTF-8</translation>
    </message>
    <message>
        <source>&quot;orbis --help&quot; tells more.</source>
        <translation>„orbis --help“ sagt mehr.</translation>
    </message>
    <message>
        <source>standard input</source>
        <translation>Standardeingabe</translation>
    </message>
    <message>
        <source>cannot read %1: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>line %1: not valid UTF-8</source>
        <translation>Zeile %1: kein gültiges UTF-8</translation>
    </message>
    <message>
        <source>line %1: a zero byte</source>
        <translation>Zeile %1: ein Nullbyte</translation>
    </message>
    <message>
        <source>1 row</source>
        <translation>1 Zeile</translation>
    </message>
    <message>
        <source>%1 rows</source>
        <translation>%1 Zeilen</translation>
    </message>
    <message>
        <source>1 row affected</source>
        <translation>1 Zeile betroffen</translation>
    </message>
    <message>
        <source>%1 rows affected</source>
        <translation>%1 Zeilen betroffen</translation>
    </message>
    <message>
        <source>0 rows affected</source>
        <translation>0 Zeilen betroffen</translation>
    </message>
    <message>
        <source>%1 statements, 0 rows affected</source>
        <translation>%1 Anweisungen, 0 Zeilen betroffen</translation>
    </message>
    <message>
        <source>A window on DuckDB databases.</source>
        <translation>Ein Fenster auf DuckDB-Datenbanken.</translation>
    </message>
    <message>
        <source>The driver to load.</source>
        <translation>Der zu ladende Treiber.</translation>
    </message>
    <message>
        <source>Another settings file.</source>
        <translation>Eine andere Einstellungsdatei.</translation>
    </message>
    <message>
        <source>Open the databases read-only.</source>
        <translation>Die Datenbanken schreibgeschützt öffnen.</translation>
    </message>
    <message>
        <source>Databases to open.</source>
        <translation>Zu öffnende Datenbanken.</translation>
    </message>
    <message>
        <source>The database could not be opened.</source>
        <translation>Die Datenbank konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>MotherDuck needs an access token.</source>
        <translation>MotherDuck braucht ein Zugangstoken.</translation>
    </message>
    <message>
        <source>The path under &quot;Local File&quot; must not be empty.</source>
        <translation>Der Pfad unter „Lokale Datei“ darf nicht leer sein.</translation>
    </message>
    <message>
        <source>Enter or select the path of a database.</source>
        <translation>Geben oder wählen Sie den Pfad einer Datenbank.</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>The statement did not run.</source>
        <translation>Die Anweisung ist nicht gelaufen.</translation>
    </message>
    <message>
        <source>%1: matches %2 rows, not one. Nothing was changed.</source>
        <translation>%1: passt auf %2 Zeilen, nicht auf eine. Nichts wurde geändert.</translation>
    </message>
    <message>
        <source>%1: the row has been changed by somebody else since it was read. Nothing was changed.</source>
        <translation>%1: Die Zeile wurde seit dem Lesen von anderen geändert. Nichts wurde geändert.</translation>
    </message>
    <message>
        <source>%1: the row was not found. Nothing was changed.</source>
        <translation>%1: Die Zeile wurde nicht gefunden. Nichts wurde geändert.</translation>
    </message>
    <message>
        <source>The transaction that was open can only be rolled back now.</source>
        <translation>Die offene Transaktion kann jetzt nur noch zurückgerollt werden.</translation>
    </message>
    <message>
        <source>%1: changed %2 rows, not one. Roll the open transaction back.</source>
        <translation>%1: hat %2 Zeilen geändert, nicht eine. Rollen Sie die offene Transaktion zurück.</translation>
    </message>
    <message>
        <source>The query did not run.</source>
        <translation>Die Abfrage ist nicht gelaufen.</translation>
    </message>
    <message>
        <source>The query gave no rows.</source>
        <translation>Die Abfrage ergab keine Zeilen.</translation>
    </message>
    <message>
        <source>The rows could not be read to their end.</source>
        <translation>Die Zeilen konnten nicht bis zum Ende gelesen werden.</translation>
    </message>
    <message>
        <source>The filter is not one expression: &quot;%1&quot;</source>
        <translation>Der Filter ist nicht ein einziger Ausdruck: „%1“</translation>
    </message>
    <message>
        <source>New row</source>
        <translation>Neue Zeile</translation>
    </message>
    <message>
        <source>The table is gone.</source>
        <translation>Die Tabelle gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>These rows cannot be changed.</source>
        <translation>Diese Zeilen lassen sich nicht ändern.</translation>
    </message>
    <message>
        <source>There is no row to delete.</source>
        <translation>Es gibt keine Zeile, die gelöscht werden könnte.</translation>
    </message>
    <message>
        <source>DuckDB Index</source>
        <translation>DuckDB-Index</translation>
    </message>
    <message>
        <source>DuckDB Unique</source>
        <translation>DuckDB-Unique</translation>
    </message>
    <message>
        <source>DuckDB Check</source>
        <translation>DuckDB-Prüfung</translation>
    </message>
    <message>
        <source>DuckDB Link</source>
        <translation>DuckDB-Verknüpfung</translation>
    </message>
    <message>
        <source>DuckDB Table</source>
        <translation>DuckDB-Tabelle</translation>
    </message>
    <message>
        <source>DuckDB Field</source>
        <translation>DuckDB-Feld</translation>
    </message>
    <message>
        <source>DuckDB View</source>
        <translation>DuckDB-Sicht</translation>
    </message>
    <message>
        <source>DuckDB Function</source>
        <translation>DuckDB-Funktion</translation>
    </message>
    <message>
        <source>DuckDB Method</source>
        <translation>DuckDB-Methode</translation>
    </message>
    <message>
        <source>DuckDB Sequence</source>
        <translation>DuckDB-Sequenz</translation>
    </message>
    <message>
        <source>A unique needs at least one column!</source>
        <translation>Ein Unique braucht mindestens eine Spalte!</translation>
    </message>
    <message>
        <source>A check needs an expression!</source>
        <translation>Eine Prüfung braucht einen Ausdruck!</translation>
    </message>
    <message>
        <source>A link needs columns on both sides!</source>
        <translation>Eine Verknüpfung braucht Spalten auf beiden Seiten!</translation>
    </message>
    <message>
        <source>A link needs two tables!</source>
        <translation>Eine Verknüpfung braucht zwei Tabellen!</translation>
    </message>
    <message>
        <source>A view needs a query!</source>
        <translation>Eine Sicht braucht eine Abfrage!</translation>
    </message>
    <message numerus="yes">
        <source>%n arguments</source>
        <translation>
            <numerusform>%n Argument</numerusform>
            <numerusform>%n Argumente</numerusform>
        </translation>
    </message>
    <message>
        <source>The text ends too early.</source>
        <translation>Der Text endet zu früh.</translation>
    </message>
    <message>
        <source>Unexpected text: %1</source>
        <translation>Unerwarteter Text: %1</translation>
    </message>
    <message>
        <source>Property will be changed on update table.</source>
        <translation>Die Eigenschaft ändert sich mit der Tabelle.</translation>
    </message>
    <message>
        <source>Undefined parent table</source>
        <translation>Die Tabelle des Feldes fehlt</translation>
    </message>
    <message>
        <source>Method cannot be empty!</source>
        <translation>Die Methode darf nicht leer sein!</translation>
    </message>
    <message>
        <source>You cannot rename function this way!</source>
        <translation>So lässt sich die Funktion nicht umbenennen!</translation>
    </message>
    <message>
        <source>The name of the view and query don&apos;t coincide!</source>
        <translation>Der Name der Sicht und der in der Abfrage stimmen nicht überein!</translation>
    </message>
    <message>
        <source>The schema of the view and query don&apos;t coincide!</source>
        <translation>Das Schema der Sicht und das in der Abfrage stimmen nicht überein!</translation>
    </message>
    <message>
        <source>The engine cannot rename the sequence &quot;%1&quot;.</source>
        <translation>Die Engine kann die Sequenz &quot;%1&quot; nicht umbenennen.</translation>
    </message>
    <message>
        <source>The engine cannot set the last value of the sequence &quot;%1&quot;.</source>
        <translation>Die Engine kann den letzten Wert der Sequenz &quot;%1&quot; nicht setzen.</translation>
    </message>
    <message>
        <source>The sequence &quot;%1&quot; is made anew and begins at its start value.</source>
        <translation>Die Sequenz &quot;%1&quot; wird neu angelegt und beginnt bei ihrem Startwert.</translation>
    </message>
    <message>
        <source>Dropping the sequence &quot;%1&quot; drops the tables that use it, with their rows: %2</source>
        <translation>Mit der Sequenz &quot;%1&quot; werden die Tabellen gelöscht, die sie verwenden, samt ihren Zeilen: %2</translation>
    </message>
    <message>
        <source>The encoding &quot;%1&quot; has not all characters of: %2</source>
        <translation>Die Kodierung „%1“ hat nicht alle Zeichen von: %2</translation>
    </message>
    <message>
        <source>There is no database to load into</source>
        <translation>Es gibt keine Datenbank, in die geladen werden könnte</translation>
    </message>
    <message>
        <source>Cannot open &quot;%1&quot;: %2</source>
        <translation>„%1“ lässt sich nicht öffnen: %2</translation>
    </message>
    <message>
        <source>Cannot write &quot;%1&quot;: %2</source>
        <translation>„%1“ lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>bytes that are no text in this encoding</source>
        <translation>Bytes, die in dieser Kodierung kein Text sind</translation>
    </message>
    <message>
        <source>line %1: bytes that are no text in this encoding</source>
        <translation>Zeile %1: Bytes, die in dieser Kodierung kein Text sind</translation>
    </message>
    <message>
        <source>the text breaks off in the middle of this statement</source>
        <translation>der Text bricht mitten in dieser Anweisung ab</translation>
    </message>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
    <message>
        <source>the transaction that begins here does not come to its end, and was taken back</source>
        <translation>die Transaktion, die hier beginnt, kommt nicht an ihr Ende und wurde zurückgenommen</translation>
    </message>
    <message>
        <source>The database is not open</source>
        <translation>Die Datenbank ist nicht offen</translation>
    </message>
    <message>
        <source>The schemas of the database could not be read</source>
        <translation>Die Schemas der Datenbank ließen sich nicht lesen</translation>
    </message>
    <message>
        <source>There is no table &quot;%1&quot; any more</source>
        <translation>Die Tabelle „%1“ gibt es nicht mehr</translation>
    </message>
    <message>
        <source>Application homepage:</source>
        <translation>Homepage der Anwendung:</translation>
    </message>
    <message>
        <source>A transaction is open in this session; end it first.</source>
        <translation>In dieser Sitzung ist eine Transaktion offen; beenden Sie sie zuerst.</translation>
    </message>
    <message>
        <source>The database is open for reading only.</source>
        <translation>Die Datenbank ist nur zum Lesen geöffnet.</translation>
    </message>
    <message>
        <source>The database is closed.</source>
        <translation>Die Datenbank ist geschlossen.</translation>
    </message>
    <message>
        <source>The change was stopped.</source>
        <translation>Die Änderung wurde angehalten.</translation>
    </message>
    <message>
        <source>The engine has no statement for this change.</source>
        <translation>Die Engine hat keine Anweisung für diese Änderung.</translation>
    </message>
    <message>
        <source>The name cannot be empty!</source>
        <translation>Der Name darf nicht leer sein!</translation>
    </message>
    <message>
        <source>Dropping the schema &quot;%1&quot; drops everything in it: %2</source>
        <translation>Mit dem Schema &quot;%1&quot; wird alles darin gelöscht: %2</translation>
    </message>
    <message>
        <source>The macro &quot;%1&quot; has %2 forms, and all of them go.</source>
        <translation>Das Makro &quot;%1&quot; hat %2 Formen, und alle werden gelöscht.</translation>
    </message>
    <message>
        <source>%1 of the table &quot;%2&quot; names the column &quot;%3&quot;, which is not there any more.</source>
        <translation>%1 der Tabelle &quot;%2&quot; nennt die Spalte &quot;%3&quot;, die es nicht mehr gibt.</translation>
    </message>
    <message>
        <source>A column of the table &quot;%1&quot; has no name.</source>
        <translation>Eine Spalte der Tabelle &quot;%1&quot; hat keinen Namen.</translation>
    </message>
    <message>
        <source>The table &quot;%1&quot; would have two columns called &quot;%2&quot;.</source>
        <translation>Die Tabelle &quot;%1&quot; hätte zwei Spalten namens &quot;%2&quot;.</translation>
    </message>
    <message>
        <source>The table &quot;%1&quot; needs a column that is not generated.</source>
        <translation>Die Tabelle &quot;%1&quot; braucht eine Spalte, die nicht berechnet ist.</translation>
    </message>
    <message>
        <source>The table &quot;%1&quot; was changed meanwhile; read it again.</source>
        <translation>Die Tabelle &quot;%1&quot; wurde inzwischen geändert; lesen Sie sie neu ein.</translation>
    </message>
    <message>
        <source>The table &quot;%1&quot; is referenced by &quot;%2&quot;; drop that link first.</source>
        <translation>Auf die Tabelle &quot;%1&quot; verweist &quot;%2&quot;; löschen Sie zuerst diese Verknüpfung.</translation>
    </message>
    <message>
        <source>The engine cannot make the table &quot;%1&quot; temporary or lasting afterwards.</source>
        <translation>Die Engine kann die Tabelle &quot;%1&quot; nicht nachträglich temporär oder dauerhaft machen.</translation>
    </message>
    <message>
        <source>The primary key</source>
        <translation>Der Primärschlüssel</translation>
    </message>
    <message>
        <source>A unique</source>
        <translation>Ein Unique</translation>
    </message>
    <message>
        <source>The index &quot;%1&quot;</source>
        <translation>Der Index &quot;%1&quot;</translation>
    </message>
    <message>
        <source>A check</source>
        <translation>Eine Prüfung</translation>
    </message>
    <message>
        <source>The generated column &quot;%1&quot;</source>
        <translation>Die berechnete Spalte &quot;%1&quot;</translation>
    </message>
    <message>
        <source>The link &quot;%1&quot;</source>
        <translation>Die Verknüpfung &quot;%1&quot;</translation>
    </message>
    <message>
        <source>Dropping the table &quot;%1&quot; loses its rows: %2</source>
        <translation>Mit der Tabelle &quot;%1&quot; gehen ihre Zeilen verloren: %2</translation>
    </message>
    <message>
        <source>The values of these columns of &quot;%1&quot; are lost: %2</source>
        <translation>Die Werte dieser Spalten von &quot;%1&quot; gehen verloren: %2</translation>
    </message>
    <message>
        <source>The values of these columns of &quot;%1&quot; are converted to another type: %2</source>
        <translation>Die Werte dieser Spalten von &quot;%1&quot; werden in einen anderen Typ umgewandelt: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no object; write kind:schema.name.child</source>
        <translation>&quot;%1&quot; ist kein Objekt; schreiben Sie Art:Schema.Name.Teil</translation>
    </message>
    <message>
        <source>there is no &quot;%1&quot;</source>
        <translation>es gibt kein &quot;%1&quot;</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not the number of a kind</source>
        <translation>&quot;%1&quot; ist keine Nummer einer Art</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no property of it</source>
        <translation>&quot;%1&quot; ist keine Eigenschaft davon</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no property of %2 &quot;%3&quot;</source>
        <translation>&quot;%1&quot; ist keine Eigenschaft von %2 &quot;%3&quot;</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no operation</source>
        <translation>&quot;%1&quot; ist keine Operation</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is nothing that can be created there</source>
        <translation>&quot;%1&quot; lässt sich dort nicht anlegen</translation>
    </message>
    <message>
        <source>entry %1: %2</source>
        <translation>Eintrag %1: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; holds no list of changes: %2</source>
        <translation>&quot;%1&quot; enthält keine Liste von Änderungen: %2</translation>
    </message>
    <message>
        <source>warning: %1</source>
        <translation>Warnung: %1</translation>
    </message>
    <message>
        <source>Shows the statements of a request on an object, and runs none.
OBJECT is kind:schema.name.child (table:main.orders, field:main.orders.id, database:),
names in double quotes where they hold a dot.</source>
        <translation>Zeigt die Anweisungen zu einer Anfrage an ein Objekt und führt keine aus.
OBJECT ist Art:Schema.Name.Teil (table:main.orders, field:main.orders.id, database:),
Namen in Anführungszeichen, wo sie einen Punkt enthalten.</translation>
    </message>
    <message>
        <source>1 type of a column, options of a sequence; 2 one property; 3 create (default);
4 drop; 5 definition; 6 call; 8 rebuild</source>
        <translation>1 Typ einer Spalte, Optionen einer Sequenz; 2 eine Eigenschaft; 3 anlegen (sonst);
4 löschen; 5 Definition; 6 Aufruf; 8 neu anlegen</translation>
    </message>
    <message>
        <source>the property, by number or name</source>
        <translation>die Eigenschaft, nach Nummer oder Name</translation>
    </message>
    <message>
        <source>what it is to become</source>
        <translation>was aus ihr werden soll</translation>
    </message>
    <message>
        <source>Shows the statements that changes of structure come to, in the order in which they run.
CHANGES is a JSON file (- for standard input), a list of
{&quot;op&quot;:&quot;create&quot;,&quot;kind&quot;,&quot;schema&quot;,&quot;table&quot;,&quot;name&quot;,&quot;properties&quot;:{},&quot;children&quot;:[]},
{&quot;op&quot;:&quot;change&quot;,&quot;object&quot;,&quot;property&quot;,&quot;value&quot;} and {&quot;op&quot;:&quot;drop&quot;,&quot;object&quot;}.</source>
        <translation>Zeigt die Anweisungen, die Änderungen der Struktur ergeben, in der Reihenfolge ihrer Ausführung.
CHANGES ist eine JSON-Datei (- für die Standardeingabe), eine Liste von
{&quot;op&quot;:&quot;create&quot;,&quot;kind&quot;,&quot;schema&quot;,&quot;table&quot;,&quot;name&quot;,&quot;properties&quot;:{},&quot;children&quot;:[]},
{&quot;op&quot;:&quot;change&quot;,&quot;object&quot;,&quot;property&quot;,&quot;value&quot;} und {&quot;op&quot;:&quot;drop&quot;,&quot;object&quot;}.</translation>
    </message>
    <message>
        <source>run them: all of them, or after a failure none</source>
        <translation>sie ausführen: alle, oder nach einem Fehler keine</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no value; write COLUMN=VALUE, COLUMN=@FILE or COLUMN:null</source>
        <translation>„%1“ ist kein Wert; zu schreiben ist SPALTE=WERT, SPALTE=@DATEI oder SPALTE:null</translation>
    </message>
    <message>
        <source>give one of --insert, --update and --delete</source>
        <translation>genau eins von --insert, --update und --delete ist anzugeben</translation>
    </message>
    <message>
        <source>--update needs a value: %1</source>
        <translation>--update braucht einen Wert: %1</translation>
    </message>
    <message>
        <source>--insert takes neither --where nor --all</source>
        <translation>--insert nimmt weder --where noch --all</translation>
    </message>
    <message>
        <source>column &quot;%1&quot; stands twice</source>
        <translation>Spalte „%1“ steht zweimal da</translation>
    </message>
    <message>
        <source>there is no column &quot;%1&quot; in &quot;%2&quot;</source>
        <translation>es gibt keine Spalte „%1“ in „%2“</translation>
    </message>
    <message>
        <source>1 row inserted</source>
        <translation>1 Zeile eingefügt</translation>
    </message>
    <message>
        <source>%1 rows inserted</source>
        <translation>%1 Zeilen eingefügt</translation>
    </message>
    <message>
        <source>1 row updated</source>
        <translation>1 Zeile geändert</translation>
    </message>
    <message>
        <source>%1 rows updated</source>
        <translation>%1 Zeilen geändert</translation>
    </message>
    <message>
        <source>1 row deleted</source>
        <translation>1 Zeile gelöscht</translation>
    </message>
    <message>
        <source>%1 rows deleted</source>
        <translation>%1 Zeilen gelöscht</translation>
    </message>
    <message>
        <source>--%1 takes a whole number from %2 on, not &quot;%3&quot;</source>
        <translation>--%1 nimmt eine ganze Zahl ab %2, nicht „%3“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not an order; write COLUMN or COLUMN:desc</source>
        <translation>„%1“ ist keine Sortierung; zu schreiben ist SPALTE oder SPALTE:desc</translation>
    </message>
    <message>
        <source>1 row in all</source>
        <translation>insgesamt 1 Zeile</translation>
    </message>
    <message>
        <source>%1 rows in all</source>
        <translation>insgesamt %1 Zeilen</translation>
    </message>
    <message>
        <source>Shows a part of the rows of a table or view, in a stable order.
TABLE is a name as SQL writes it, with its schema in front where needed. Of a BLOB
that is no key only the first 128 bytes are read.</source>
        <translation>Zeigt einen Teil der Zeilen einer Tabelle oder Sicht, in fester Reihenfolge.
TABLE ist ein Name, wie SQL ihn schreibt, wo nötig mit seinem Schema davor. Von einem
BLOB, der kein Schlüssel ist, werden nur die ersten 128 Bytes gelesen.</translation>
    </message>
    <message>
        <source>rows to leave out at the start; none without it</source>
        <translation>Zeilen, die am Anfang fehlen sollen; ohne die Option keine</translation>
    </message>
    <message>
        <source>rows to show at most; 1000 without it</source>
        <translation>höchstens so viele Zeilen; ohne die Option 1000</translation>
    </message>
    <message>
        <source>sorts by a column; several sort one behind another</source>
        <translation>sortiert nach einer Spalte; mehrere hintereinander</translation>
    </message>
    <message>
        <source>also the engine&apos;s number of each row</source>
        <translation>auch die Nummer, die die Engine jeder Zeile gibt</translation>
    </message>
    <message>
        <source>also the generated columns</source>
        <translation>auch die berechneten Spalten</translation>
    </message>
    <message>
        <source>counts all rows, not an estimate</source>
        <translation>zählt alle Zeilen, statt zu schätzen</translation>
    </message>
    <message>
        <source>Writes one row of a table, in a transaction; exit status 1 when nothing was changed.
Values are COL=TEXT, COL=@FILE for the bytes of a file or COL:null; &quot;@@&quot; begins a text
that begins with &quot;@&quot;. Each option takes all values up to the next one.</source>
        <translation>Schreibt eine Zeile einer Tabelle, in einer Transaktion; Exit-Status 1, wenn nichts geändert wurde.
Werte sind COL=TEXT, COL=@FILE für die Bytes einer Datei oder COL:null; „@@“ beginnt einen
Text, der mit „@“ beginnt. Jede Option nimmt alle Werte bis zur nächsten.</translation>
    </message>
    <message>
        <source>adds a row; without values one of defaults</source>
        <translation>fügt eine Zeile an; ohne Werte eine aus Vorgaben</translation>
    </message>
    <message>
        <source>changes the row that --where names</source>
        <translation>ändert die Zeile, die --where nennt</translation>
    </message>
    <message>
        <source>deletes the row that --where names</source>
        <translation>löscht die Zeile, die --where nennt</translation>
    </message>
    <message>
        <source>values that the row has, all of them; exactly one row must have them</source>
        <translation>Werte, die die Zeile hat, alle davon; genau eine Zeile muss sie haben</translation>
    </message>
    <message>
        <source>any number of rows may match</source>
        <translation>beliebig viele Zeilen dürfen passen</translation>
    </message>
    <message>
        <source>there is no table or view &quot;%1&quot;</source>
        <translation>es gibt keine Tabelle oder Sicht „%1“</translation>
    </message>
    <message>
        <source>Their order is that of the list; drag to change it.</source>
        <translation>Ihre Reihenfolge ist die der Liste; Ziehen ändert sie.</translation>
    </message>
    <message>
        <source>Add Column</source>
        <translation>Spalte hinzufügen</translation>
    </message>
    <message>
        <source>Add Generated Column</source>
        <translation>Berechnete Spalte hinzufügen</translation>
    </message>
    <message>
        <source>Add Index</source>
        <translation>Index hinzufügen</translation>
    </message>
    <message>
        <source>Add Unique</source>
        <translation>Eindeutigkeit hinzufügen</translation>
    </message>
    <message>
        <source>Add Check</source>
        <translation>Prüfung hinzufügen</translation>
    </message>
    <message>
        <source>Add Foreign Key</source>
        <translation>Fremdschlüssel hinzufügen</translation>
    </message>
    <message>
        <source>New Schema...</source>
        <translation>Neues Schema ...</translation>
    </message>
    <message>
        <source>New Table...</source>
        <translation>Neue Tabelle ...</translation>
    </message>
    <message>
        <source>New View...</source>
        <translation>Neue Sicht ...</translation>
    </message>
    <message>
        <source>New Macro...</source>
        <translation>Neues Makro ...</translation>
    </message>
    <message>
        <source>New Sequence...</source>
        <translation>Neue Sequenz ...</translation>
    </message>
    <message>
        <source>New Column...</source>
        <translation>Neue Spalte ...</translation>
    </message>
    <message>
        <source>New Generated Column...</source>
        <translation>Neue berechnete Spalte ...</translation>
    </message>
    <message>
        <source>New Index...</source>
        <translation>Neuer Index ...</translation>
    </message>
    <message>
        <source>New Unique...</source>
        <translation>Neue Eindeutigkeit ...</translation>
    </message>
    <message>
        <source>New Check...</source>
        <translation>Neue Prüfung ...</translation>
    </message>
    <message>
        <source>New Foreign Key...</source>
        <translation>Neuer Fremdschlüssel ...</translation>
    </message>
    <message>
        <source>%1 %2, %3 a second</source>
        <translation>%1 %2, %3 je Sekunde</translation>
    </message>
    <message>
        <source>, %1 left</source>
        <translation>, noch %1</translation>
    </message>
    <message>
        <source>rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>bytes</source>
        <translation>Bytes</translation>
    </message>
    <message>
        <source>--data takes one of: %1</source>
        <translation>--data nimmt eines von: %1</translation>
    </message>
    <message>
        <source>unknown encoding &quot;%1&quot;</source>
        <translation>unbekannte Kodierung „%1“</translation>
    </message>
    <message>
        <source>--insert-rows and --insert-kib take a number, 0 for no limit</source>
        <translation>--insert-rows und --insert-kib nehmen eine Zahl, 0 für keine Grenze</translation>
    </message>
    <message>
        <source>give either schemas or tables, not both</source>
        <translation>entweder Schemas oder Tabellen angeben, nicht beides</translation>
    </message>
    <message>
        <source>cannot write the dump: %1</source>
        <translation>der Dump lässt sich nicht schreiben: %1</translation>
    </message>
    <message>
        <source>the dump would take the place of the database</source>
        <translation>der Dump würde an die Stelle der Datenbank treten</translation>
    </message>
    <message>
        <source>there is no schema or table &quot;%1&quot;</source>
        <translation>es gibt kein Schema und keine Tabelle „%1“</translation>
    </message>
    <message>
        <source>cannot write &quot;%1&quot;: %2</source>
        <translation>„%1“ lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>this database cannot be dumped</source>
        <translation>diese Datenbank lässt sich nicht dumpen</translation>
    </message>
    <message>
        <source>cannot open &quot;%1&quot;: %2</source>
        <translation>„%1“ lässt sich nicht öffnen: %2</translation>
    </message>
    <message>
        <source>nothing can be loaded into this database</source>
        <translation>in diese Datenbank lässt sich nichts laden</translation>
    </message>
    <message>
        <source>%1 of %2 statements failed</source>
        <translation>%1 von %2 Anweisungen schlugen fehl</translation>
    </message>
    <message>
        <source>Writes a database, or some of it, to one SQL text that gives the same database again.
FILE &quot;-&quot; is standard output. A file takes its place only when the dump is whole, and
holds one state of the database while others write.</source>
        <translation>Schreibt eine Datenbank oder einen Teil davon als einen SQL-Text, der wieder dieselbe
Datenbank ergibt. FILE „-“ ist die Standardausgabe. Eine Datei tritt erst an ihre Stelle,
wenn der Dump ganz ist, und hält einen Stand der Datenbank fest, während andere schreiben.</translation>
    </message>
    <message>
        <source>this schema only; may be given again</source>
        <translation>nur dieses Schema; auch mehrmals</translation>
    </message>
    <message>
        <source>this table only; may be given again</source>
        <translation>nur diese Tabelle; auch mehrmals</translation>
    </message>
    <message>
        <source>both (default), structure or data</source>
        <translation>both (beides, Vorgabe), structure (Struktur) oder data (Daten)</translation>
    </message>
    <message>
        <source>drop what is there before it is made</source>
        <translation>löschen, was da ist, bevor es angelegt wird</translation>
    </message>
    <message>
        <source>no transaction around the rows of a table</source>
        <translation>keine Transaktion um die Zeilen einer Tabelle</translation>
    </message>
    <message>
        <source>an INSERT statement for each row</source>
        <translation>eine INSERT-Anweisung für jede Zeile</translation>
    </message>
    <message>
        <source>rows of a statement (250); 0: no limit</source>
        <translation>Zeilen einer Anweisung (250); 0: keine Grenze</translation>
    </message>
    <message>
        <source>KiB of a statement (250); 0: no limit</source>
        <translation>KiB einer Anweisung (250); 0: keine Grenze</translation>
    </message>
    <message>
        <source>rows take the place of those with the same key</source>
        <translation>Zeilen ersetzen die mit demselben Schlüssel</translation>
    </message>
    <message>
        <source>encoding of the text (UTF-8)</source>
        <translation>Kodierung des Textes (UTF-8)</translation>
    </message>
    <message>
        <source>Runs the statements of an SQL text, a dump above all, in a database.
FILE &quot;-&quot; is standard input. Statements that fail are told with their lines and make the
exit status 1; the others run all the same.</source>
        <translation>Führt die Anweisungen eines SQL-Textes, vor allem eines Dumps, in einer Datenbank aus.
FILE „-“ ist die Standardeingabe. Anweisungen, die fehlschlagen, werden mit ihren Zeilen
genannt und ergeben den Status 1; die anderen laufen trotzdem.</translation>
    </message>
    <message>
        <source>end at the first statement that fails</source>
        <translation>bei der ersten Anweisung enden, die fehlschlägt</translation>
    </message>
    <message>
        <source>do not run statements in groups</source>
        <translation>Anweisungen nicht in Gruppen ausführen</translation>
    </message>
    <message>
        <source>encoding of the text (UTF-8) without a byte-order mark</source>
        <translation>Kodierung des Textes (UTF-8) ohne Bytereihenfolge-Marke</translation>
    </message>
    <message>
        <source>Open a database first, for the dump to be loaded into.</source>
        <translation>Öffnen Sie zuerst eine Datenbank, in die der Dump geladen wird.</translation>
    </message>
    <message numerus="yes">
        <source>... and %n more</source>
        <translation>
            <numerusform>... und %n weiterer</numerusform>
            <numerusform>... und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Create Function</source>
        <translation>Funktion anlegen</translation>
    </message>
    <message>
        <source>Returns:</source>
        <translation>Ergebnis:</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Sprache:</translation>
    </message>
    <message>
        <source>Parameters:</source>
        <translation>Parameter:</translation>
    </message>
    <message>
        <source>Body:</source>
        <translation>Rumpf:</translation>
    </message>
    <message>
        <source>Comment:</source>
        <translation>Kommentar:</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Table Macro</source>
        <translation>Tabellenmakro</translation>
    </message>
    <message>
        <source>Schema:</source>
        <translation>Schema:</translation>
    </message>
    <message>
        <source>Runs a script in JavaScript: the classes of Qt stand in &quot;qt&quot;, the databases in &quot;db&quot;.
Options for the script itself come behind &quot;--&quot;. Exit status 1 after an error that the
script did not catch, or what it gave to exit().</source>
        <translation>Führt ein Skript in JavaScript aus: die Klassen von Qt stehen in „qt“, die Datenbanken in „db“.
Optionen für das Skript selbst stehen hinter „--“. Exit-Status 1 nach einem Fehler, den das
Skript nicht abfing, oder was es exit() gab.</translation>
    </message>
    <message>
        <source>the script itself instead of a file</source>
        <translation>das Skript selbst statt einer Datei</translation>
    </message>
    <message>
        <source>give a script file, or its text by --eval</source>
        <translation>Geben Sie eine Skriptdatei an oder ihren Text mit --eval</translation>
    </message>
    <message>
        <source>The script did not return to the event loop for %1 s and was stopped.</source>
        <translation>Das Skript ist seit %1 s nicht zur Ereignisschleife zurückgekehrt und wurde angehalten.</translation>
    </message>
    <message>
        <source>A temporary object hides &quot;%1&quot; of main from the engine; rename or drop that one first.</source>
        <translation>Ein temporäres Objekt verdeckt „%1“ von main vor der Engine; benennen Sie zuerst jenes um oder löschen Sie es.</translation>
    </message>
    <message>
        <source>Without the sequence &quot;%1&quot; the defaults of these columns fail: %2</source>
        <translation>Ohne die Sequenz „%1“ schlagen die Vorgabewerte dieser Spalten fehl: %2</translation>
    </message>
    <message>
        <source>Values of this type have texts that do not tell all of them; a statement can change them.</source>
        <translation>Werte dieses Typs haben Texte, die nicht alles von ihnen sagen; eine Anweisung kann sie ändern.</translation>
    </message>
    <message>
        <source>The text of this array can be read in more than one way; a statement can change it.</source>
        <translation>Der Text dieses Arrays lässt sich auf mehrere Arten lesen; eine Anweisung kann es ändern.</translation>
    </message>
    <message>
        <source>The link does not tie these two tables.</source>
        <translation>Die Verknüpfung verbindet diese beiden Tabellen nicht.</translation>
    </message>
    <message>
        <source>There is no row to link.</source>
        <translation>Es gibt keine Zeile zum Verknüpfen.</translation>
    </message>
    <message>
        <source>A row can be linked to one marked row, not to %1.</source>
        <translation>Eine Zeile kann mit einer markierten Zeile verknüpft werden, nicht mit %1.</translation>
    </message>
    <message>
        <source>No row is marked.</source>
        <translation>Keine Zeile ist markiert.</translation>
    </message>
    <message>
        <source>a script to run before the database is opened</source>
        <translation>ein Skript, das vor dem Öffnen der Datenbank läuft</translation>
    </message>
    <message>
        <source>a script to run once the database is open</source>
        <translation>ein Skript, das nach dem Öffnen der Datenbank läuft</translation>
    </message>
    <message>
        <source>%1: &quot;%2&quot; is not what it was.</source>
        <translation>%1: „%2“ ist nicht mehr, was es war.</translation>
    </message>
    <message>
        <source>%1: ended with %2.</source>
        <translation>%1: endete mit %2.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 is not UTF-8 text</source>
        <translation>%1 ist kein UTF-8-Text</translation>
    </message>
    <message>
        <source>Table: %1
Type: %2
Text: %3</source>
        <translation>Tabelle: %1
Typ: %2
Text: %3</translation>
    </message>
    <message>
        <source>There is no property %1 here.</source>
        <translation>Die Eigenschaft %1 gibt es hier nicht.</translation>
    </message>
    <message>
        <source>No column of &quot;%1&quot; stays: its rows may be lost: %2</source>
        <translation>Keine Spalte von „%1“ bleibt; ihre Zeilen können verloren gehen: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not UTF-8 text, which the column &quot;%2&quot; wants</source>
        <translation>„%1“ ist kein UTF-8-Text, den die Spalte „%2“ verlangt</translation>
    </message>
    <message>
        <source>could not read the list &quot;%1&quot; of %2 &quot;%3&quot;</source>
        <translation>Die Liste „%1“ von %2 „%3“ konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>&quot;%1&quot; of %2 &quot;%3&quot; cannot be changed</source>
        <translation>„%1“ von %2 „%3“ lässt sich nicht ändern</translation>
    </message>
    <message>
        <source>%1 could not be read</source>
        <translation>%1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>The list &quot;%1&quot; of &quot;%2&quot;</source>
        <translation>Die Liste „%1“ von „%2“</translation>
    </message>
    <message>
        <source>The macros of &quot;%1&quot;</source>
        <translation>Die Liste der Makros von „%1“</translation>
    </message>
    <message>
        <source>The catalogue</source>
        <translation>Der Katalog</translation>
    </message>
    <message>
        <source>The types of &quot;%1&quot;</source>
        <translation>Die Liste der Typen von „%1“</translation>
    </message>
</context>
<context>
    <name>ResultGrid</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy as CSV</source>
        <translation>Als CSV kopieren</translation>
    </message>
    <message>
        <source>Copy as INSERT</source>
        <translation>Als INSERT kopieren</translation>
    </message>
    <message>
        <source>Show Value...</source>
        <translation>Wert zeigen ...</translation>
    </message>
</context>
<context>
    <name>ScriptTab</name>
    <message>
        <source>Run</source>
        <translation>Ausführen</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>Limit: </source>
        <translation>Grenze: </translation>
    </message>
    <message>
        <source>A script that keeps the window waiting for so long is stopped. Calls of qt, db and console let the window go on; a loop without any does not.</source>
        <translation>Ein Skript, das das Fenster so lange warten lässt, wird angehalten. Aufrufe von qt, db und console lassen das Fenster weiterarbeiten, eine Schleife ohne solche nicht.</translation>
    </message>
    <message>
        <source>Running... %1 s </source>
        <translation>Läuft seit %1 s </translation>
    </message>
    <message>
        <source>Script</source>
        <translation>Skript</translation>
    </message>
    <message>
        <source>Stopped after %1 ms </source>
        <translation>Angehalten nach %1 ms </translation>
    </message>
    <message>
        <source>Failed after %1 ms </source>
        <translation>Fehlgeschlagen nach %1 ms </translation>
    </message>
    <message>
        <source>%1 ms </source>
        <translation>%1 ms </translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>A script is still running in this tab. Stop it and close?</source>
        <translation>In diesem Reiter läuft noch ein Skript. Anhalten und schließen?</translation>
    </message>
    <message>
        <source>The script has changes that are not saved. Close it all the same?</source>
        <translation>Das Skript hat Änderungen, die nicht gespeichert sind. Trotzdem schließen?</translation>
    </message>
</context>
<context>
    <name>SqlEditorTab</name>
    <message>
        <source>Run All</source>
        <translation>Alles ausführen</translation>
    </message>
    <message>
        <source>Run Selection or Statement at Cursor</source>
        <translation>Auswahl oder Anweisung am Cursor ausführen</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Default schemas</source>
        <translation>Standardschemas</translation>
    </message>
    <message>
        <source>Snippets</source>
        <translation>Vorlagen</translation>
    </message>
    <message>
        <source>Running... %1 s </source>
        <translation>Läuft seit %1 s </translation>
    </message>
    <message>
        <source>The database has been closed. </source>
        <translation>Die Datenbank ist geschlossen. </translation>
    </message>
    <message>
        <source>Result %1</source>
        <translation>Ergebnis %1</translation>
    </message>
    <message>
        <source>%1: %2 rows</source>
        <translation>%1: %2 Zeilen</translation>
    </message>
    <message>
        <source>%1: done, %2 rows affected</source>
        <translation>%1: fertig, %2 Zeilen betroffen</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Meldungen</translation>
    </message>
    <message>
        <source>Failed after %1 ms </source>
        <translation>Fehler nach %1 ms </translation>
    </message>
    <message>
        <source>%1 ms </source>
        <translation>%1 ms </translation>
    </message>
</context>
<context>
    <name>StartPage</name>
    <message>
        <source>Open a Database...</source>
        <translation>Datenbank öffnen ...</translation>
    </message>
    <message>
        <source>Create a Database...</source>
        <translation>Datenbank anlegen ...</translation>
    </message>
    <message>
        <source>New Database in Memory</source>
        <translation>Neue Datenbank im Speicher</translation>
    </message>
    <message>
        <source>Recent databases</source>
        <translation>Zuletzt benutzte Datenbanken</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Remove from the List</source>
        <translation>Aus der Liste entfernen</translation>
    </message>
</context>
<context>
    <name>StructureMenu</name>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>Rename...</source>
        <translation>Umbenennen ...</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>New name of %1:</source>
        <translation>Neuer Name von %1:</translation>
    </message>
    <message>
        <source>Drop...</source>
        <translation>Löschen ...</translation>
    </message>
    <message>
        <source>Reading what depends on %1...</source>
        <translation>Es wird gelesen, was von %1 abhängt ...</translation>
    </message>
    <message>
        <source>%1 is no longer there.</source>
        <translation>%1 gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>Change Structure</source>
        <translation>Struktur ändern</translation>
    </message>
    <message>
        <source>Go on?</source>
        <translation>Fortfahren?</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>Changing the structure...</source>
        <translation>Die Struktur wird geändert ...</translation>
    </message>
    <message numerus="yes">
        <source>Drop %n objects...</source>
        <translation>
            <numerusform>%n Objekt löschen...</numerusform>
            <numerusform>%n Objekte löschen...</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>und %n weiteres</numerusform>
            <numerusform>und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Drop %1?</source>
        <translation>%1 löschen?</translation>
    </message>
    <message>
        <source>Drop these objects?</source>
        <translation>Diese Objekte löschen?</translation>
    </message>
</context>
<context>
    <name>TableGrid</name>
    <message>
        <source>%1 of %2 selected rows are in memory and were copied; export the rest.</source>
        <translation>%1 von %2 gewählten Zeilen sind im Speicher und wurden kopiert; für den Rest dient der Export.</translation>
    </message>
    <message>
        <source>%1 cells pasted</source>
        <translation>%1 Zellen eingefügt</translation>
    </message>
    <message>
        <source>Show Value...</source>
        <translation>Wert zeigen ...</translation>
    </message>
    <message>
        <source>Set NULL</source>
        <translation>Auf NULL setzen</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy as CSV</source>
        <translation>Als CSV kopieren</translation>
    </message>
    <message>
        <source>Copy as INSERT</source>
        <translation>Als INSERT kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Delete Rows</source>
        <translation>Zeilen löschen</translation>
    </message>
    <message>
        <source>Keep Rows</source>
        <translation>Zeilen behalten</translation>
    </message>
    <message>
        <source>%1 cells pasted. %2</source>
        <translation>%1 Zellen eingefügt. %2</translation>
    </message>
</context>
<context>
    <name>TableModel</name>
    <message>
        <source>The table is gone.</source>
        <translation>Die Tabelle gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>default</source>
        <translation>Vorgabe</translation>
    </message>
    <message>
        <source>This cell cannot be changed.</source>
        <translation>Diese Zelle lässt sich nicht ändern.</translation>
    </message>
    <message>
        <source>These rows cannot be changed.</source>
        <translation>Diese Zeilen lassen sich nicht ändern.</translation>
    </message>
</context>
<context>
    <name>TaskPage</name>
    <message>
        <source>Stopping...</source>
        <translation>Wird angehalten...</translation>
    </message>
    <message numerus="yes">
        <source>, about %n second(s) left</source>
        <translation>
            <numerusform>, noch etwa %n Sekunde</numerusform>
            <numerusform>, noch etwa %n Sekunden</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, %2 a second</source>
        <translation>%1, %2 je Sekunde</translation>
    </message>
    <message>
        <source>%1 in %2 s</source>
        <translation>%1 in %2 s</translation>
    </message>
</context>
<context>
    <name>TreeModel</name>
    <message>
        <source>Reading...</source>
        <translation>Wird gelesen ...</translation>
    </message>
    <message>
        <source>The list could not be read; the error log tells why</source>
        <translation>Die Liste konnte nicht gelesen werden; das Fehlerprotokoll sagt, warum</translation>
    </message>
    <message>
        <source>could not be read</source>
        <translation>konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>the file is gone</source>
        <translation>die Datei ist weg</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; of the open database &quot;%2&quot; is gone.</source>
        <translation>Die Datei „%1“ der offenen Datenbank „%2“ ist weg.</translation>
    </message>
</context>
<context>
    <name>ValueDialog</name>
    <message>
        <source>Hexadecimal</source>
        <translation>Hexadezimal</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Save to File...</source>
        <translation>In Datei speichern ...</translation>
    </message>
    <message>
        <source>Load from File...</source>
        <translation>Aus Datei laden ...</translation>
    </message>
    <message>
        <source>Set NULL</source>
        <translation>Auf NULL setzen</translation>
    </message>
    <message>
        <source>These bytes are no picture.</source>
        <translation>Diese Bytes sind kein Bild.</translation>
    </message>
    <message>
        <source>The first %1 of %2 bytes are shown.</source>
        <translation>Gezeigt werden die ersten %1 von %2 Bytes.</translation>
    </message>
    <message>
        <source>Load from File</source>
        <translation>Aus Datei laden</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Save to File</source>
        <translation>In Datei speichern</translation>
    </message>
    <message>
        <source>Only pairs of hexadecimal digits can be stored.</source>
        <translation>Nur Paare hexadezimaler Ziffern lassen sich speichern.</translation>
    </message>
</context>
</TS>
