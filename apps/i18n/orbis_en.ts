<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>DesignTab</name>
    <message numerus="yes">
        <source>Applied: %n statements.</source>
        <translation>
            <numerusform>Applied: %n statement.</numerusform>
            <numerusform>Applied: %n statements.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DumpWizard</name>
    <message numerus="yes">
        <source>%1 row(s)</source>
        <translation>
            <numerusform>%1 row</numerusform>
            <numerusform>%1 rows</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LoadWizard</name>
    <message numerus="yes">
        <source>%n statement(s) ran</source>
        <translation>
            <numerusform>%n statement ran</numerusform>
            <numerusform>%n statements ran</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %n failed</source>
        <translation>
            <numerusform>, %n failed</numerusform>
            <numerusform>, %n failed</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message numerus="yes">
        <source>%n schemas</source>
        <translation>
            <numerusform>%n schema</numerusform>
            <numerusform>%n schemas</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Do you really want to delete %n fields?</source>
        <translation>
            <numerusform>Do you really want to delete %n field?</numerusform>
            <numerusform>Do you really want to delete %n fields?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Do you really want to delete %n methods?</source>
        <translation>
            <numerusform>Do you really want to delete %n method?</numerusform>
            <numerusform>Do you really want to delete %n methods?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n arguments</source>
        <translation>
            <numerusform>%n argument</numerusform>
            <numerusform>%n arguments</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>... and %n more</source>
        <translation>
            <numerusform>... and %n more</numerusform>
            <numerusform>... and %n more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StructureMenu</name>
    <message numerus="yes">
        <source>Drop %n objects...</source>
        <translation>
            <numerusform>Drop %n object...</numerusform>
            <numerusform>Drop %n objects...</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>and %n more</numerusform>
            <numerusform>and %n more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TaskPage</name>
    <message numerus="yes">
        <source>, about %n second(s) left</source>
        <translation>
            <numerusform>, about %n second left</numerusform>
            <numerusform>, about %n seconds left</numerusform>
        </translation>
    </message>
</context>
</TS>
