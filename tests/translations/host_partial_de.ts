<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="corvane.style.light">
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message id="corvane.copying-failed.message">
        <source>The theme &apos;%1&apos; could not be copied. You can try to delete all local themes to start fresh.</source>
        <translation>Das Theme „%1“ ließ sich nicht kopieren.</translation>
    </message>
</context>
</TS>
