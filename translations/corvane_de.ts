<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name></name>
    <message id="corvane.comparison.time-out" numerus="yes">
        <source>The theme repository %1 did not answer within %2 seconds.</source>
        <translation>
            <numerusform>Das Theme-Repository %1 hat nicht innerhalb von %2 Sekunde geantwortet.</numerusform>
            <numerusform>Das Theme-Repository %1 hat nicht innerhalb von %2 Sekunden geantwortet.</numerusform>
        </translation>
    </message>
    <message id="corvane.style.light">
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message id="corvane.style.dark">
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message id="corvane.ThemeDifferencesError.base">
        <source>Computing theme differences failed: %1</source>
        <translation>Vergleichen der Themes fehlgeschlagen: %1</translation>
    </message>
    <message id="corvane.generic-error.description">
        <source>The operation couldn&apos;t be completed. (%1 error %2.)</source>
        <translation>Der Vorgang konnte nicht abgeschlossen werden. (%1 Fehler %2.)</translation>
    </message>
    <message id="corvane.fetch-failed.title">
        <source>Update Error</source>
        <translation>Aktualisierungsfehler</translation>
    </message>
    <message id="corvane.fetch-failed.message">
        <source>Themes from the server could not be updated.</source>
        <translation>Die Themes vom Server konnten nicht aktualisiert werden.</translation>
    </message>
    <message id="corvane.fetch-failed.close-updater">
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message id="corvane.fetch-failed.retry">
        <source>Retry</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message id="corvane.copying-failed.title">
        <source>Copying Theme Failed</source>
        <translation>Kopieren des Themes fehlgeschlagen</translation>
    </message>
    <message id="corvane.copying-failed.message">
        <source>The theme &apos;%1&apos; could not be copied. You can try to delete all local themes to start fresh.</source>
        <translation>Das Theme „%1“ konnte nicht kopiert werden. Sie können alle lokalen Themes löschen, um neu zu beginnen.</translation>
    </message>
    <message id="corvane.copying-failed.continue">
        <source>Continue</source>
        <translation>Fortfahren</translation>
    </message>
    <message id="corvane.copying-failed.resolve">
        <source>Delete Local Themes</source>
        <translation>Lokale Themes löschen</translation>
    </message>
    <message id="corvane.deleting-local-repo-failed.title">
        <source>Deleting Local Theme Repository Failed</source>
        <translation>Löschen des lokalen Theme-Repositorys fehlgeschlagen</translation>
    </message>
    <message id="corvane.deleting-local-repo-failed.message">
        <source>Deleting the local copy of available themes failed. You can try to remove the directory manually and try again.</source>
        <translation>Die lokale Kopie der verfügbaren Themes konnte nicht gelöscht werden. Sie können das Verzeichnis von Hand entfernen und es erneut versuchen.</translation>
    </message>
    <message id="corvane.deleting-local-repo-failed.continue">
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message id="corvane.deleting-local-repo-failed.resolve">
        <source>Show Directory</source>
        <translation>Verzeichnis zeigen</translation>
    </message>
    <message id="corvane.deleting-installed-themes-failed.title">
        <source>Deleting Local Theme Repository Failed</source>
        <translation>Löschen des lokalen Theme-Repositorys fehlgeschlagen</translation>
    </message>
    <message id="corvane.deleting-installed-themes-failed.message">
        <source>Removing installed themes failed. You can try to remove the directory manually and try again.</source>
        <translation>Die installierten Themes konnten nicht entfernt werden. Sie können das Verzeichnis von Hand entfernen und es erneut versuchen.</translation>
    </message>
    <message id="corvane.deleting-installed-themes-failed.continue">
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message id="corvane.deleting-installed-themes-failed.resolve">
        <source>Show Directory</source>
        <translation>Verzeichnis zeigen</translation>
    </message>
    <message id="corvane.LocalThemeFetchingError.fileError">
        <source>File error: %1</source>
        <translation>Dateifehler: %1</translation>
    </message>
    <message id="corvane.LocalThemeFetchingError.base">
        <source>Local theme fetching error: %1</source>
        <translation>Fehler beim Lesen der installierten Themes: %1</translation>
    </message>
    <message id="corvane.RemoteThemeFetchingError.repositoryError">
        <source>Repository error: %1</source>
        <translation>Repository-Fehler: %1</translation>
    </message>
    <message id="corvane.RemoteThemeFetchingError.base">
        <source>Remote theme fetching error: %1</source>
        <translation>Fehler beim Abrufen der Themes vom Server: %1</translation>
    </message>
    <message id="corvane.git.no-progress" numerus="yes">
        <source>The transfer from %1 made no progress for %2 seconds.</source>
        <translation>
            <numerusform>Die Übertragung von %1 kam %2 Sekunde lang nicht voran.</numerusform>
            <numerusform>Die Übertragung von %1 kam %2 Sekunden lang nicht voran.</numerusform>
        </translation>
    </message>
    <message id="corvane.JSONDecoderError.dataCorrupted">
        <source>The data couldn&apos;t be read because it isn&apos;t valid JSON (%1).</source>
        <translation>Die Daten konnten nicht gelesen werden, da sie kein gültiges JSON sind (%1).</translation>
    </message>
    <message id="corvane.JSONDecoderError.keyNotFound">
        <source>No value associated with key &quot;%1&quot;.</source>
        <translation>Kein Wert für den Schlüssel „%1“ vorhanden.</translation>
    </message>
    <message id="corvane.JSONDecoderError.valueNotFound">
        <source>Expected %1 value for key &quot;%2&quot; but found null instead.</source>
        <translation>Erwartet wurde ein %1-Wert für den Schlüssel „%2“, gefunden wurde aber null.</translation>
    </message>
    <message id="corvane.JSONDecoderError.typeMismatch.document">
        <source>Expected the document to be a JSON %1 but found %2 instead.</source>
        <translation>Erwartet wurde als Dokument ein JSON-%1, gefunden wurde aber %2.</translation>
    </message>
    <message id="corvane.JSONDecoderError.typeMismatch">
        <source>Expected %1 value for key &quot;%2&quot; but found %3 instead.</source>
        <translation>Erwartet wurde ein %1-Wert für den Schlüssel „%2“, gefunden wurde aber %3.</translation>
    </message>
    <message id="corvane.JSONDecodingError.dataReadingFailed">
        <source>reading Data from &apos;%1&apos; failed: %2</source>
        <translation>Lesen der Daten aus „%1“ fehlgeschlagen: %2</translation>
    </message>
    <message id="corvane.JSONDecodingError.jsonDecodingFailed">
        <source>decoding JSON from &apos;%1&apos; failed: %2</source>
        <translation>Dekodieren von JSON aus „%1“ fehlgeschlagen: %2</translation>
    </message>
    <message id="corvane.JSONDecodingError.base">
        <source>Could not decode JSON, %1</source>
        <translation>JSON konnte nicht dekodiert werden, %1</translation>
    </message>
    <message id="corvane.file.missing">
        <source>The file doesn&apos;t exist.</source>
        <translation>Die Datei existiert nicht.</translation>
    </message>
    <message id="corvane.file.kind.directory">
        <source>a directory</source>
        <translation>ein Verzeichnis</translation>
    </message>
    <message id="corvane.file.kind.fifo">
        <source>a FIFO (named pipe)</source>
        <translation>ein FIFO (benannte Pipe)</translation>
    </message>
    <message id="corvane.file.kind.socket">
        <source>a socket</source>
        <translation>ein Socket</translation>
    </message>
    <message id="corvane.file.kind.device">
        <source>a device</source>
        <translation>ein Gerät</translation>
    </message>
    <message id="corvane.file.kind.special">
        <source>a special file</source>
        <translation>eine Spezialdatei</translation>
    </message>
    <message id="corvane.file.not-regular">
        <source>It is not a regular file but %1.</source>
        <translation>Sie ist keine normale Datei, sondern %1.</translation>
    </message>
    <message id="corvane.file.too-large" numerus="yes">
        <source>The file has %1 bytes; a theme file may have at most %2 bytes.</source>
        <translation>
            <numerusform>Die Datei hat %1 Byte; eine Theme-Datei darf höchstens %2 Bytes haben.</numerusform>
            <numerusform>Die Datei hat %1 Bytes; eine Theme-Datei darf höchstens %2 Bytes haben.</numerusform>
        </translation>
    </message>
    <message id="corvane.ThemeDecodingError.base">
        <source>Theme decoding failed: %1</source>
        <translation>Dekodieren der Themes fehlgeschlagen: %1</translation>
    </message>
    <message id="corvane.JSONDecoderError.found.string">
        <source>a string</source>
        <translation>eine Zeichenkette</translation>
    </message>
    <message id="corvane.JSONDecoderError.found.array">
        <source>an array</source>
        <translation>ein Array</translation>
    </message>
    <message id="corvane.JSONDecoderError.found.object">
        <source>an object</source>
        <translation>ein Objekt</translation>
    </message>
    <message id="corvane.JSONDecoderError.found.boolean">
        <source>a boolean</source>
        <translation>ein Wahrheitswert</translation>
    </message>
    <message id="corvane.JSONDecoderError.found.null">
        <source>null</source>
        <translation>null</translation>
    </message>
    <message id="corvane.JSONDecoderError.found.number">
        <source>a number</source>
        <translation>eine Zahl</translation>
    </message>
    <message id="corvane.JSONDecoderError.corrupted.utf8">
        <source>the text is not valid UTF-8</source>
        <translation>der Text ist kein gültiges UTF-8</translation>
    </message>
    <message id="corvane.JSONDecoderError.corrupted.depth">
        <source>arrays and objects are nested more than 1024 levels deep</source>
        <translation>Arrays und Objekte sind tiefer als 1024 Ebenen verschachtelt</translation>
    </message>
    <message id="corvane.JSONDecoderError.corrupted.empty">
        <source>the document is empty</source>
        <translation>das Dokument ist leer</translation>
    </message>
    <message id="corvane.remote-themes.linked-file">
        <source>The theme file &apos;%1&apos; is a symbolic link. Links from the theme repository are never read.</source>
        <translation>Die Theme-Datei „%1“ ist ein symbolischer Link. Links aus dem Theme-Repository werden nie gelesen.</translation>
    </message>
    <message id="corvane.remote-themes.linked-directory">
        <source>The theme directory &apos;%1&apos; is a symbolic link. Links from the theme repository are never read.</source>
        <translation>Das Theme-Verzeichnis „%1“ ist ein symbolischer Link. Links aus dem Theme-Repository werden nie gelesen.</translation>
    </message>
    <message id="corvane.remote-themes.irregular-file">
        <source>The theme file &apos;%1&apos; is not a regular file.</source>
        <translation>Die Theme-Datei „%1“ ist keine normale Datei.</translation>
    </message>
    <message id="corvane.file-manager.trash-failed">
        <source>Could not move &apos;%1&apos; to the Trash: %2</source>
        <translation>„%1“ konnte nicht in den Papierkorb verschoben werden: %2</translation>
    </message>
    <message id="corvane.file-manager.trash-refused">
        <source>The Trash refused it.</source>
        <translation>Der Papierkorb hat es abgelehnt.</translation>
    </message>
    <message id="corvane.file-manager.create-directory-failed">
        <source>Could not create the directory &apos;%1&apos;: %2</source>
        <translation>Das Verzeichnis „%1“ konnte nicht angelegt werden: %2</translation>
    </message>
    <message id="corvane.file-manager.not-local">
        <source>It is not a local path.</source>
        <translation>Es ist kein lokaler Pfad.</translation>
    </message>
    <message id="corvane.file-manager.file-in-the-way">
        <source>A file, not a directory, stands at &apos;%1&apos;.</source>
        <translation>An der Stelle „%1“ steht eine Datei, kein Verzeichnis.</translation>
    </message>
    <message id="corvane.file-manager.copy-failed">
        <source>Could not copy &apos;%1&apos; to &apos;%2&apos;: %3</source>
        <translation>„%1“ konnte nicht nach „%2“ kopiert werden: %3</translation>
    </message>
    <message id="corvane.file-manager.copy-not-local">
        <source>Both must be local file paths.</source>
        <translation>Beide müssen lokale Dateipfade sein.</translation>
    </message>
    <message id="corvane.file-manager.source-unreadable">
        <source>Could not read &apos;%1&apos;: %2</source>
        <translation>„%1“ konnte nicht gelesen werden: %2</translation>
    </message>
    <message id="corvane.file-manager.no-directory">
        <source>The directory &apos;%1&apos; doesn&apos;t exist.</source>
        <translation>Das Verzeichnis „%1“ existiert nicht.</translation>
    </message>
    <message id="corvane.all-updated.title">
        <source>All themes are up to date</source>
        <translation>Alle Themes sind aktuell</translation>
    </message>
    <message id="corvane.all-updated.message">
        <source>There are no new themes or updates right now.</source>
        <translation>Zurzeit gibt es keine neuen Themes und keine Aktualisierungen.</translation>
    </message>
    <message id="corvane.window.title">
        <source>Theme Updates</source>
        <translation>Theme-Aktualisierungen</translation>
    </message>
    <message id="corvane.loading.message">
        <source>Checking for theme updates…</source>
        <translation>Suche nach Theme-Aktualisierungen …</translation>
    </message>
    <message id="corvane.theme.update">
        <source>Update</source>
        <extracomment>Update button label</extracomment>
        <translation>Aktualisieren</translation>
    </message>
    <message id="corvane.theme.update.accessible">
        <source>Update %1</source>
        <translation>%1 aktualisieren</translation>
    </message>
    <message id="corvane.theme.install">
        <source>Install</source>
        <extracomment>Install button label</extracomment>
        <translation>Installieren</translation>
    </message>
    <message id="corvane.theme.install.accessible">
        <source>Install %1</source>
        <translation>%1 installieren</translation>
    </message>
    <message id="corvane.list.update-all">
        <source>Update All</source>
        <translation>Alle aktualisieren</translation>
    </message>
    <message id="corvane.list.refresh">
        <source>Refresh</source>
        <translation>Neu laden</translation>
    </message>
    <message id="corvane.list.open-theme-directory">
        <source>Open Theme Folder</source>
        <translation>Theme-Ordner öffnen</translation>
    </message>
    <message id="corvane.list.accessible-name">
        <source>Theme updates</source>
        <translation>Theme-Aktualisierungen</translation>
    </message>
    <message id="corvane.loading.install-progress" numerus="yes">
        <source>Updating %1 of %2…</source>
        <translation>
            <numerusform>Aktualisiere %1 von %2 …</numerusform>
            <numerusform>Aktualisiere %1 von %2 …</numerusform>
        </translation>
    </message>
    <message id="corvane.file-manager.name-not-representable">
        <source>The name &apos;%1&apos; cannot be represented as a file name.</source>
        <translation>Der Name „%1“ lässt sich nicht als Dateiname darstellen.</translation>
    </message>
    <message id="corvane.file-manager.dangling-link-in-the-way">
        <source>A symbolic link to something that doesn&apos;t exist stands at &apos;%1&apos;.</source>
        <translation>Bei „%1“ steht ein symbolischer Link auf etwas, das nicht existiert.</translation>
    </message>
    <message id="corvane.file-manager.no-trash-on-file-system">
        <source>Its file system has no Trash that can be used here (&apos;%1&apos;), and the user&apos;s Trash is on another one.</source>
        <translation>Sein Dateisystem hat keinen hier nutzbaren Papierkorb („%1“), und der Papierkorb des Benutzers liegt auf einem anderen.</translation>
    </message>
    <message id="corvane.file-manager.trash-other-file-system">
        <source>It is on another file system than the Trash.</source>
        <translation>Es liegt auf einem anderen Dateisystem als der Papierkorb.</translation>
    </message>
    <message id="corvane.clone-lock.busy-minutes" numerus="yes">
        <source>Another synchronisation of the clone %1 has been running for %2 minutes.</source>
        <translation>
            <numerusform>Eine andere Synchronisierung des Klons %1 läuft seit %2 Minute.</numerusform>
            <numerusform>Eine andere Synchronisierung des Klons %1 läuft seit %2 Minuten.</numerusform>
        </translation>
    </message>
    <message id="corvane.clone-lock.busy-seconds" numerus="yes">
        <source>Another synchronisation of the clone %1 has been running for %2 seconds.</source>
        <translation>
            <numerusform>Eine andere Synchronisierung des Klons %1 läuft seit %2 Sekunde.</numerusform>
            <numerusform>Eine andere Synchronisierung des Klons %1 läuft seit %2 Sekunden.</numerusform>
        </translation>
    </message>
    <message id="corvane.git.connect-time-out" numerus="yes">
        <source>Could not connect to %1 within %2 seconds.</source>
        <translation>
            <numerusform>Keine Verbindung zu %1 innerhalb von %2 Sekunde.</numerusform>
            <numerusform>Keine Verbindung zu %1 innerhalb von %2 Sekunden.</numerusform>
        </translation>
    </message>
    <message id="corvane.git.first-byte-time-out" numerus="yes">
        <source>The server of %1 accepted the connection but sent nothing for %2 seconds.</source>
        <translation>
            <numerusform>Der Server von %1 hat die Verbindung angenommen, aber %2 Sekunde lang nichts gesendet.</numerusform>
            <numerusform>Der Server von %1 hat die Verbindung angenommen, aber %2 Sekunden lang nichts gesendet.</numerusform>
        </translation>
    </message>
    <message id="corvane.remote-themes.oversized-file" numerus="yes">
        <source>The theme file &apos;%1&apos; has %2 bytes; a theme file may have at most %3 bytes. It was not checked out.</source>
        <translation>
            <numerusform>Die Theme-Datei „%1“ hat %2 Byte; eine Theme-Datei darf höchstens %3 Bytes haben. Sie wurde nicht ausgecheckt.</numerusform>
            <numerusform>Die Theme-Datei „%1“ hat %2 Bytes; eine Theme-Datei darf höchstens %3 Bytes haben. Sie wurde nicht ausgecheckt.</numerusform>
        </translation>
    </message>
    <message id="corvane.file-manager.source-theme-changed">
        <source>The theme file &apos;%1&apos; changed in the repository after the list was made; nothing was installed.</source>
        <translation>Die Theme-Datei „%1“ hat sich im Repository geändert, nachdem die Liste erstellt wurde; es wurde nichts installiert.</translation>
    </message>
    <message id="corvane.list.find">
        <source>Find by name or author</source>
        <translation>Nach Name oder Autor suchen</translation>
    </message>
    <message id="corvane.list.update-shown" numerus="yes">
        <source>Update %1 Shown</source>
        <translation>
            <numerusform>%1 angezeigtes aktualisieren</numerusform>
            <numerusform>%1 angezeigte aktualisieren</numerusform>
        </translation>
    </message>
    <message id="corvane.row.show-in-folder">
        <source>Show in Folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message id="corvane.row.copy-name">
        <source>Copy Name</source>
        <translation>Namen kopieren</translation>
    </message>
    <message id="corvane.git.credentials-refused">
        <source>The server of %1 refused the credentials.</source>
        <translation>Der Server von %1 hat die Anmeldedaten abgelehnt.</translation>
    </message>
    <message id="corvane.git.certificate-refused">
        <source>The certificate of %1 was refused by the application.</source>
        <translation>Das Zertifikat von %1 wurde von der Anwendung abgelehnt.</translation>
    </message>
    <message id="corvane.summary.checked-now">
        <source>checked just now</source>
        <translation>gerade eben geprüft</translation>
    </message>
    <message id="corvane.summary.checked-minutes" numerus="yes">
        <source>checked %1 minutes ago</source>
        <translation>
            <numerusform>vor %1 Minute geprüft</numerusform>
            <numerusform>vor %1 Minuten geprüft</numerusform>
        </translation>
    </message>
    <message id="corvane.summary.checked-hours" numerus="yes">
        <source>checked %1 hours ago</source>
        <translation>
            <numerusform>vor %1 Stunde geprüft</numerusform>
            <numerusform>vor %1 Stunden geprüft</numerusform>
        </translation>
    </message>
    <message id="corvane.summary.checked-days" numerus="yes">
        <source>checked %1 days ago</source>
        <translation>
            <numerusform>vor %1 Tag geprüft</numerusform>
            <numerusform>vor %1 Tagen geprüft</numerusform>
        </translation>
    </message>
    <message id="corvane.summary.themes" numerus="yes">
        <source>%1 themes to install or update</source>
        <translation>
            <numerusform>%1 Theme zu installieren oder zu aktualisieren</numerusform>
            <numerusform>%1 Themes zu installieren oder zu aktualisieren</numerusform>
        </translation>
    </message>
    <message id="corvane.summary.line">
        <source>%1 · %2</source>
        <translation>%1 · %2</translation>
    </message>
    <message id="corvane.theme.skipped">
        <source>Skipped</source>
        <translation>Übersprungen</translation>
    </message>
    <message id="corvane.list.show-skipped">
        <source>Show Skipped</source>
        <translation>Übersprungene zeigen</translation>
    </message>
    <message id="corvane.row.unskip">
        <source>Stop Skipping This Version</source>
        <translation>Diese Version nicht mehr überspringen</translation>
    </message>
    <message id="corvane.row.skip">
        <source>Skip This Version</source>
        <translation>Diese Version überspringen</translation>
    </message>
    <message id="corvane.list.section-new">
        <source>New (%1)</source>
        <translation>Neu (%1)</translation>
    </message>
    <message id="corvane.list.section-updates">
        <source>Updates (%1)</source>
        <translation>Aktualisierungen (%1)</translation>
    </message>
    <message id="corvane.sync.receiving" numerus="yes">
        <source>Receiving objects: %1 of %2 (%3)…</source>
        <translation>
            <numerusform>Empfange Objekte: %1 von %2 (%3) …</numerusform>
            <numerusform>Empfange Objekte: %1 von %2 (%3) …</numerusform>
        </translation>
    </message>
    <message id="corvane.sync.resolving" numerus="yes">
        <source>Resolving changes: %1 of %2…</source>
        <translation>
            <numerusform>Löse Änderungen auf: %1 von %2 …</numerusform>
            <numerusform>Löse Änderungen auf: %1 von %2 …</numerusform>
        </translation>
    </message>
    <message id="corvane.sync.checking-out" numerus="yes">
        <source>Checking out files: %1 of %2…</source>
        <translation>
            <numerusform>Schreibe Dateien: %1 von %2 …</numerusform>
            <numerusform>Schreibe Dateien: %1 von %2 …</numerusform>
        </translation>
    </message>
    <message id="corvane.undo-failed.title">
        <source>Undo Failed</source>
        <translation>Rückgängig machen fehlgeschlagen</translation>
    </message>
    <message id="corvane.undo-failed.message">
        <source>The last install could not be undone.</source>
        <translation>Die letzte Installation konnte nicht rückgängig gemacht werden.</translation>
    </message>
    <message id="corvane.undo-failed.continue">
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message id="corvane.undo-failed.resolve">
        <source>Open Theme Folder</source>
        <translation>Theme-Ordner öffnen</translation>
    </message>
    <message id="corvane.undo-notice.undo">
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message id="corvane.undo-notice.updated-one">
        <source>Updated %1</source>
        <translation>%1 aktualisiert</translation>
    </message>
    <message id="corvane.undo-notice.installed-one">
        <source>Installed %1</source>
        <translation>%1 installiert</translation>
    </message>
    <message id="corvane.undo-notice.updated-many" numerus="yes">
        <source>Updated %1 themes</source>
        <translation>
            <numerusform>%1 Theme aktualisiert</numerusform>
            <numerusform>%1 Themes aktualisiert</numerusform>
        </translation>
    </message>
    <message id="corvane.undo-notice.installed-many" numerus="yes">
        <source>Installed %1 themes</source>
        <translation>
            <numerusform>%1 Theme installiert</numerusform>
            <numerusform>%1 Themes installiert</numerusform>
        </translation>
    </message>
    <message id="corvane.undo.nothing">
        <source>There is no install to undo in &apos;%1&apos;.</source>
        <translation>In &apos;%1&apos; gibt es keine Installation, die rückgängig gemacht werden kann.</translation>
    </message>
    <message id="corvane.undo.file-changed">
        <source>&apos;%1&apos; has changed since it was installed, so the install cannot be undone. Nothing was changed.</source>
        <translation>&apos;%1&apos; wurde seit der Installation geändert, daher kann die Installation nicht rückgängig gemacht werden. Es wurde nichts verändert.</translation>
    </message>
    <message id="corvane.undo.trash-entry-gone">
        <source>The earlier version of &apos;%1&apos; is no longer in the Trash, so the install cannot be undone. Nothing was changed.</source>
        <translation>Die frühere Version von &apos;%1&apos; ist nicht mehr im Papierkorb, daher kann die Installation nicht rückgängig gemacht werden. Es wurde nichts verändert.</translation>
    </message>
    <message id="corvane.undo.in-the-way">
        <source>Something new stands at &apos;%1&apos;, where its earlier version would go back, so the install cannot be undone. Nothing was changed.</source>
        <translation>An der Stelle &apos;%1&apos;, an die die frühere Version zurückkäme, liegt etwas Neues, daher kann die Installation nicht rückgängig gemacht werden. Es wurde nichts verändert.</translation>
    </message>
    <message id="corvane.undo.record-unreadable">
        <source>The record of the last install in &apos;%1&apos; cannot be read, so the install cannot be undone.</source>
        <translation>Die Aufzeichnung der letzten Installation in &apos;%1&apos; kann nicht gelesen werden, daher kann die Installation nicht rückgängig gemacht werden.</translation>
    </message>
    <message id="corvane.undo.interrupted">
        <source>The last install stopped while replacing &apos;%1&apos;, so it cannot be undone. Its earlier version may be in the Trash.</source>
        <translation>Die letzte Installation brach beim Ersetzen von &apos;%1&apos; ab und kann daher nicht rückgängig gemacht werden. Die frühere Version liegt möglicherweise im Papierkorb.</translation>
    </message>
    <message id="corvane.undo.failed">
        <source>Undoing the install stopped at &apos;%1&apos;: %2</source>
        <translation>Das Rückgängigmachen der Installation hielt bei &apos;%1&apos; an: %2</translation>
    </message>
    <message id="corvane.loading.undo-progress" numerus="yes">
        <source>Undoing %1 of %2…</source>
        <translation>
            <numerusform>Mache %1 von %2 rückgängig …</numerusform>
            <numerusform>Mache %1 von %2 rückgängig …</numerusform>
        </translation>
    </message>
</context>
</TS>
