<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name></name>
    <message id="demo.window.title">
        <source>Inkwell Preferences — Themes</source>
        <translation>Inkwell-Einstellungen — Themes</translation>
    </message>
    <message id="demo.notice.text">
        <source>The theme repository has new themes and updates for you.</source>
        <translation>Im Theme-Repository gibt es neue Themes und Aktualisierungen für Sie.</translation>
    </message>
    <message id="demo.notice.show">
        <source>Show Updates</source>
        <translation>Aktualisierungen zeigen</translation>
    </message>
    <message id="demo.notice.dismiss">
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message id="demo.installed.heading">
        <source>Installed themes</source>
        <translation>Installierte Themes</translation>
    </message>
    <message id="demo.column.name">
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message id="demo.column.style">
        <source>Style</source>
        <translation>Stil</translation>
    </message>
    <message id="demo.column.version">
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message id="demo.column.authors">
        <source>Authors</source>
        <translation>Autoren</translation>
    </message>
    <message id="demo.status.checking">
        <source>Checking the theme repository…</source>
        <translation>Das Theme-Repository wird geprüft …</translation>
    </message>
    <message id="demo.button.updates">
        <source>Theme Updates…</source>
        <translation>Theme-Aktualisierungen …</translation>
    </message>
    <message id="demo.button.undo">
        <source>Undo Last Update</source>
        <translation>Letzte Aktualisierung rückgängig machen</translation>
    </message>
    <message id="demo.status.undone">
        <source>Undone: %1 theme files moved to the Trash, %2 earlier versions restored.</source>
        <translation>Rückgängig gemacht: %1 Theme-Dateien in den Papierkorb verschoben, %2 frühere Versionen wiederhergestellt.</translation>
    </message>
    <message id="demo.status.moved-on">
        <source>The theme repository has changed since you last looked.</source>
        <translation>Das Theme-Repository hat sich seit Ihrem letzten Blick geändert.</translation>
    </message>
    <message id="demo.status.failed">
        <source>Could not check the theme repository: %1</source>
        <translation>Das Theme-Repository konnte nicht geprüft werden: %1</translation>
    </message>
    <message id="demo.status.current">
        <source>Your themes are current with the theme repository.</source>
        <translation>Ihre Themes sind auf dem Stand des Theme-Repositorys.</translation>
    </message>
    <message id="demo.button.forget-skipped">
        <source>Forget Skipped Versions</source>
        <translation>Übersprungene Versionen vergessen</translation>
    </message>
    <message id="demo.style.dark">
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message id="demo.style.light">
        <source>Light</source>
        <translation>Hell</translation>
    </message>
</context>
</TS>
