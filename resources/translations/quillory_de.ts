<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>ActionsMenu</name>
    <message>
        <source>Find in sheet	Ctrl+F</source>
        <translation>Im Blatt suchen	Strg+F</translation>
    </message>
    <message>
        <source>Search the current sheet’s text</source>
        <translation>Den Text des gezeigten Blatts durchsuchen</translation>
    </message>
    <message>
        <source>Refresh	Ctrl+R</source>
        <translation>Neu laden	Strg+R</translation>
    </message>
    <message>
        <source>Reload cheat sheets from your library folder</source>
        <translation>Die Blätter im Ordner der Bibliothek neu lesen</translation>
    </message>
    <message>
        <source>Open in default editor</source>
        <translation>Im üblichen Editor öffnen</translation>
    </message>
    <message>
        <source>Open the sheet source in your default editor</source>
        <translation>Den Quelltext des Blatts im üblichen Editor öffnen</translation>
    </message>
    <message>
        <source>Open With…</source>
        <translation>Öffnen mit …</translation>
    </message>
    <message>
        <source>Reveal in Finder</source>
        <translation>In der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Show this sheet in Finder</source>
        <translation>Dieses Blatt in der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Choose folder…</source>
        <translation>Ordner wählen …</translation>
    </message>
    <message>
        <source>Choose the folder containing your cheat sheets</source>
        <translation>Den Ordner mit Ihren Spickzetteln wählen</translation>
    </message>
    <message>
        <source>Install starter sheets…</source>
        <translation>Beispielblätter einrichten …</translation>
    </message>
    <message>
        <source>Add bundled example sheets without replacing existing files</source>
        <translation>Mitgelieferte Beispielblätter hinzufügen, ohne vorhandene Dateien zu ersetzen</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Quit Quillory	Ctrl+Q</source>
        <translation>Quillory beenden	Strg+Q</translation>
    </message>
</context>
<context>
    <name>Autostart</name>
    <message>
        <source>The desktop does not allow it.</source>
        <translation>Die Arbeitsumgebung erlaubt es nicht.</translation>
    </message>
</context>
<context>
    <name>DesktopBindings</name>
    <message>
        <source>For ~/.config/sway/config; then run: swaymsg reload</source>
        <translation>Für ~/.config/sway/config; danach: swaymsg reload</translation>
    </message>
    <message>
        <source>For ~/.config/hypr/hyprland.conf, which is read again when it is saved.</source>
        <translation>Für ~/.config/hypr/hyprland.conf, die beim Speichern neu gelesen wird.</translation>
    </message>
    <message>
        <source>For ~/.config/i3/config; then run: i3-msg reload</source>
        <translation>Für ~/.config/i3/config; danach: i3-msg reload</translation>
    </message>
    <message>
        <source>Run these commands. Keys that are bound already stay.</source>
        <translation>Führen Sie diese Befehle aus. Tasten, die schon belegt sind, bleiben es.</translation>
    </message>
    <message>
        <source>Run these commands, with Quillory installed, and log in again. System Settings shows the keys under Shortcuts.</source>
        <translation>Führen Sie diese Befehle aus, wenn Quillory installiert ist, und melden Sie sich neu an. Die Systemeinstellungen zeigen die Tasten unter Kurzbefehle.</translation>
    </message>
    <message>
        <source>Run this command.</source>
        <translation>Führen Sie diesen Befehl aus.</translation>
    </message>
    <message>
        <source>On X11 Quillory takes its shortcuts itself: clear them in its settings once these are bound.</source>
        <translation>Unter X11 nimmt Quillory seine Tastenkürzel selbst: löschen Sie sie in seinen Einstellungen, sobald diese belegt sind.</translation>
    </message>
    <message>
        <source>No shortcut is stored that calls the reader: these are the usual keys.</source>
        <translation>Kein Tastenkürzel ruft den Leser: dies sind die üblichen Tasten.</translation>
    </message>
    <message>
        <source>A key that is let go starts nothing on this desktop: it can&apos;t bind a peek.</source>
        <translation>Eine losgelassene Taste startet auf diesem Desktop nichts: kurz ansehen lässt sich damit nicht.</translation>
    </message>
    <message>
        <source>The same keys are stored for the peek, which is inactive then.</source>
        <translation>Für das kurze Ansehen sind dieselben Tasten gespeichert; es ist dann abgeschaltet.</translation>
    </message>
    <message>
        <source>No shortcut is stored that peeks: these are the usual keys.</source>
        <translation>Kein Tastenkürzel gilt dem kurzen Ansehen: dies sind die üblichen Tasten.</translation>
    </message>
    <message>
        <source>%1 has no name for the keys that peek. Choose others in the settings.</source>
        <translation>%1 hat keinen Namen für die Tasten des kurzen Ansehens. Wählen Sie andere in den Einstellungen.</translation>
    </message>
    <message>
        <source>%1 has no name for the keys that call the reader. Choose others in the settings.</source>
        <translation>%1 hat keinen Namen für die Tasten, die den Leser rufen. Wählen Sie andere in den Einstellungen.</translation>
    </message>
</context>
<context>
    <name>DesktopWishes</name>
    <message>
        <source>Show the reader, or send it away</source>
        <translation>Den Leser rufen oder wegschicken</translation>
    </message>
    <message>
        <source>Show the reader while the keys are held</source>
        <translation>Den Leser zeigen, solange die Tasten gehalten werden</translation>
    </message>
</context>
<context>
    <name>KeyboardShortcuts</name>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
</context>
<context>
    <name>Library</name>
    <message>
        <source>Could not install %1: %2</source>
        <translation>%1 konnte nicht eingerichtet werden: %2</translation>
    </message>
    <message>
        <source>Invalid starter filename</source>
        <translation>Ungültiger Name eines Beispielblatts</translation>
    </message>
    <message>
        <source>Could not open the selected folder</source>
        <translation>Der gewählte Ordner konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Could not create %1: %2</source>
        <translation>%1 konnte nicht angelegt werden: %2</translation>
    </message>
    <message>
        <source>Could not install icons: %1</source>
        <translation>Die Symbole konnten nicht eingerichtet werden: %1</translation>
    </message>
    <message>
        <source>Cannot install icons: icons must be a local directory, not a symlink.</source>
        <translation>Die Symbole können nicht eingerichtet werden: „icons“ muss ein Ordner sein und keine Verknüpfung.</translation>
    </message>
    <message>
        <source>Missing or invalid bundled icon: %1</source>
        <translation>Ein mitgeliefertes Symbol fehlt oder ist ungültig: %1</translation>
    </message>
    <message>
        <source>Installed %1</source>
        <translation>%1 eingerichtet</translation>
    </message>
    <message>
        <source>Skipped existing %1</source>
        <translation>%1 ist schon da und bleibt, wie es ist</translation>
    </message>
    <message>
        <source>This sheet exceeds the 2 MiB limit. Open it in your editor to shorten it.</source>
        <translation>Dieses Blatt ist größer als die erlaubten 2 MiB. Kürzen Sie es in Ihrem Editor.</translation>
    </message>
    <message>
        <source>This sheet is not valid UTF-8. Save it as UTF-8 in your editor.</source>
        <translation>Dieses Blatt ist kein gültiges UTF-8. Speichern Sie es in Ihrem Editor als UTF-8.</translation>
    </message>
    <message>
        <source>The sheets before this one take all the memory that is there for sheets. Move some of them to another folder.</source>
        <translation>Die Blätter vor diesem belegen allen Speicher, der für Blätter da ist. Verschieben Sie einige in einen anderen Ordner.</translation>
    </message>
    <message>
        <source>This sheet could not be read, since no process could be started for it. Close other programs and refresh.</source>
        <translation>Dieses Blatt konnte nicht gelesen werden, da sich kein Prozess dafür starten ließ. Schließen Sie andere Programme und laden Sie neu.</translation>
    </message>
    <message>
        <source>This sheet is still being read. It is shown as code until then.</source>
        <translation>Dieses Blatt wird noch gelesen. Bis dahin erscheint es als Code.</translation>
    </message>
    <message>
        <source>This sheet takes too long to read and is shown as code. Simplify it in your editor.</source>
        <translation>Dieses Blatt zu lesen dauert zu lange; es erscheint als Code. Vereinfachen Sie es in Ihrem Editor.</translation>
    </message>
    <message>
        <source>Reading this sheet failed and it is shown as code. Look in your editor for what is unusual in it.</source>
        <translation>Dieses Blatt ließ sich nicht lesen und erscheint als Code. Sehen Sie in Ihrem Editor nach, was daran ungewöhnlich ist.</translation>
    </message>
    <message>
        <source>Could not read the folder. Choose it again or refresh. %1</source>
        <translation>Der Ordner konnte nicht gelesen werden. Wählen Sie ihn noch einmal oder laden Sie neu. %1</translation>
    </message>
    <message>
        <source>Missing bundled starter: %1</source>
        <translation>Ein mitgeliefertes Beispielblatt fehlt: %1</translation>
    </message>
    <message>
        <source>The name of this file is not valid UTF-8. Give it a new name.</source>
        <translation>Der Name dieser Datei ist kein gültiges UTF-8. Geben Sie ihr einen neuen.</translation>
    </message>
    <message>
        <source>Folder access needs to be restored. Choose the folder again.</source>
        <translation>Der Zugriff auf den Ordner ist verloren. Wählen Sie den Ordner noch einmal.</translation>
    </message>
    <message>
        <source>The settings file was damaged and has been set aside as %1.</source>
        <translation>Die Datei der Einstellungen war beschädigt und liegt jetzt unter %1.</translation>
    </message>
    <message>
        <source>The settings could not be read from %1: %2</source>
        <translation>Die Einstellungen konnten nicht aus %1 gelesen werden: %2</translation>
    </message>
    <message>
        <source>The settings could not be written to %1: %2</source>
        <translation>Die Einstellungen konnten nicht nach %1 geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Copy failed</source>
        <translation>Kopieren fehlgeschlagen</translation>
    </message>
    <message>
        <source>Copied, with hidden characters</source>
        <translation>Kopiert, mit verborgenen Zeichen</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
    <message>
        <source>Choose folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Choose a folder containing your cheat sheets.</source>
        <translation>Wählen Sie einen Ordner mit Ihren Spickzetteln.</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Choose an application to open %1.</source>
        <translation>Wählen Sie ein Programm, das %1 öffnet.</translation>
    </message>
    <message>
        <source>Could not remember folder access: %1</source>
        <translation>Der Zugriff auf den Ordner ließ sich nicht merken: %1</translation>
    </message>
    <message>
        <source>Could not open %1 in its default application.</source>
        <translation>%1 ließ sich nicht im üblichen Programm öffnen.</translation>
    </message>
    <message>
        <source>Could not open %1 in the browser.</source>
        <translation>%1 ließ sich nicht im Browser öffnen.</translation>
    </message>
    <message>
        <source>Could not open %1: %2</source>
        <translation>%1 konnte nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>Icon %1: use a readable, static 256 × 256 PNG inside the library, no larger than 256 KB. Showing a placeholder.</source>
        <translation>Symbol %1: Verwenden Sie ein lesbares, unbewegtes PNG von 256 × 256 innerhalb der Bibliothek, nicht größer als 256 KB. Ein Platzhalter steht dafür.</translation>
    </message>
    <message>
        <source>%1 · JSON example</source>
        <translation>%1 · JSON-Beispiel</translation>
    </message>
    <message>
        <source>Could not open the file dialog: %1</source>
        <translation>Der Dateidialog ließ sich nicht öffnen: %1</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Search library</source>
        <translation>Bibliothek durchsuchen</translation>
    </message>
    <message>
        <source>Find in sheet</source>
        <translation>Im Blatt suchen</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Larger text</source>
        <translation>Größere Schrift</translation>
    </message>
    <message>
        <source>Smaller text</source>
        <translation>Kleinere Schrift</translation>
    </message>
    <message>
        <source>Usual text size</source>
        <translation>Übliche Schriftgröße</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Quit Quillory</source>
        <translation>Quillory beenden</translation>
    </message>
</context>
<context>
    <name>MarkdownRenderer</name>
    <message>
        <source>[Image unavailable: %1]</source>
        <translation>[Bild nicht verfügbar: %1]</translation>
    </message>
</context>
<context>
    <name>MenuBarItems</name>
    <message>
        <source>Quillory</source>
        <translation>Quillory</translation>
    </message>
    <message>
        <source>Open Quillory to read your cheat sheets</source>
        <translation>Quillory öffnen und die eigenen Spickzettel lesen</translation>
    </message>
    <message>
        <source>Open Quillory</source>
        <translation>Quillory öffnen</translation>
    </message>
    <message>
        <source>Quillory — Update available</source>
        <translation>Quillory — Aktualisierung verfügbar</translation>
    </message>
    <message>
        <source>Update available…</source>
        <translation>Aktualisierung verfügbar…</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Aktualisierungen suchen…</translation>
    </message>
    <message>
        <source>Quit Quillory</source>
        <translation>Quillory beenden</translation>
    </message>
    <message>
        <source>Open %1</source>
        <translation>%1 öffnen</translation>
    </message>
    <message>
        <source>Unpin %1</source>
        <translation>%1 lösen</translation>
    </message>
</context>
<context>
    <name>ModifierGesture</name>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Double Shift, then hold</source>
        <translation>Umschalt doppelt, dann halten</translation>
    </message>
    <message>
        <source>Double Option, then hold</source>
        <translation>Alt doppelt, dann halten</translation>
    </message>
</context>
<context>
    <name>NativeReader</name>
    <message>
        <source>Match</source>
        <translation>Gefunden</translation>
    </message>
    <message>
        <source>No matches</source>
        <translation>Nichts gefunden</translation>
    </message>
</context>
<context>
    <name>QtOpenPanel</name>
    <message>
        <source>Applications (*.desktop)</source>
        <translation>Programme (*.desktop)</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; can&apos;t be made here.</source>
        <translation>Der Ordner „%1“ kann hier nicht angelegt werden.</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>Name of the new folder:</source>
        <translation>Name des neuen Ordners:</translation>
    </message>
</context>
<context>
    <name>Quillory::AboutSection</name>
    <message>
        <source>Checks for updates about once a day. Updates are installed with your approval.</source>
        <translation>Etwa einmal am Tag wird nach Aktualisierungen gesucht. Installiert wird nur mit Ihrer Zustimmung.</translation>
    </message>
</context>
<context>
    <name>Quillory::BannerLabel</name>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
</context>
<context>
    <name>Quillory::BottomBar</name>
    <message>
        <source>Previous sheet</source>
        <translation>Voriges Blatt</translation>
    </message>
    <message>
        <source>Read the previous cheat sheet in your library</source>
        <translation>Das vorige Blatt Ihrer Bibliothek lesen</translation>
    </message>
    <message>
        <source>Next sheet</source>
        <translation>Nächstes Blatt</translation>
    </message>
    <message>
        <source>Read the next cheat sheet in your library</source>
        <translation>Das nächste Blatt Ihrer Bibliothek lesen</translation>
    </message>
    <message>
        <source>Reader actions</source>
        <translation>Aktionen</translation>
    </message>
    <message>
        <source>Reader actions: find, refresh, open in editor, and manage your library</source>
        <translation>Aktionen: suchen, neu laden, im Editor öffnen und die Bibliothek verwalten</translation>
    </message>
</context>
<context>
    <name>Quillory::BusyIndicator</name>
    <message>
        <source>Loading</source>
        <translation>Lädt</translation>
    </message>
</context>
<context>
    <name>Quillory::CheckForUpdatesView</name>
    <message>
        <source>Checking for Updates…</source>
        <translation>Suche nach Aktualisierungen…</translation>
    </message>
    <message>
        <source>Update available…</source>
        <translation>Aktualisierung verfügbar…</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Aktualisierungen suchen…</translation>
    </message>
</context>
<context>
    <name>Quillory::DesktopFileOpener</name>
    <message>
        <source>This is no application.</source>
        <translation>Das ist kein Programm.</translation>
    </message>
    <message>
        <source>The desktop could not open it.</source>
        <translation>Der Desktop konnte es nicht öffnen.</translation>
    </message>
    <message>
        <source>Its command line is malformed.</source>
        <translation>Seine Befehlszeile ist fehlerhaft.</translation>
    </message>
    <message>
        <source>There is no terminal to run it in.</source>
        <translation>Es gibt kein Terminal, in dem es laufen könnte.</translation>
    </message>
</context>
<context>
    <name>Quillory::Disclosure</name>
    <message>
        <source>expanded</source>
        <translation>aufgeklappt</translation>
    </message>
    <message>
        <source>collapsed</source>
        <translation>zugeklappt</translation>
    </message>
</context>
<context>
    <name>Quillory::EmptyState</name>
    <message>
        <source>Choose folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Choose the folder containing your cheat sheets</source>
        <translation>Den Ordner mit Ihren Spickzetteln wählen</translation>
    </message>
    <message>
        <source>Install starter sheets</source>
        <translation>Beispielblätter einrichten</translation>
    </message>
    <message>
        <source>Choose bundled example sheets to add to your folder</source>
        <translation>Mitgelieferte Beispielblätter für Ihren Ordner wählen</translation>
    </message>
    <message>
        <source>Your sheets, one click away</source>
        <translation>Ihre Blätter, einen Klick entfernt</translation>
    </message>
    <message>
        <source>Choose a folder to start. Your files stay yours.</source>
        <translation>Wählen Sie zum Anfang einen Ordner. Ihre Dateien bleiben Ihre.</translation>
    </message>
    <message>
        <source>No cheat sheets</source>
        <translation>Keine Spickzettel</translation>
    </message>
    <message>
        <source>Add top-level .md or .quillory.json files, or install starter sheets.</source>
        <translation>Legen Sie .md- oder .quillory.json-Dateien in den Ordner oder richten Sie Beispielblätter ein.</translation>
    </message>
</context>
<context>
    <name>Quillory::FindBar</name>
    <message>
        <source>Find in this sheet</source>
        <translation>In diesem Blatt suchen</translation>
    </message>
    <message>
        <source>Find text in the current sheet; press Return for the next match</source>
        <translation>Text im gezeigten Blatt suchen; die Eingabetaste führt zum nächsten Fund</translation>
    </message>
    <message>
        <source>Previous match</source>
        <translation>Voriger Fund</translation>
    </message>
    <message>
        <source>Select the previous matching text</source>
        <translation>Den vorigen Fund auswählen</translation>
    </message>
    <message>
        <source>Next match</source>
        <translation>Nächster Fund</translation>
    </message>
    <message>
        <source>Select the next matching text</source>
        <translation>Den nächsten Fund auswählen</translation>
    </message>
    <message>
        <source>Close find</source>
        <translation>Suche schließen</translation>
    </message>
    <message>
        <source>Close search and clear the search text</source>
        <translation>Die Suche schließen und den Suchtext löschen</translation>
    </message>
</context>
<context>
    <name>Quillory::FolderSection</name>
    <message>
        <source>Local cheat sheet folder</source>
        <translation>Ordner der Spickzettel</translation>
    </message>
    <message>
        <source>Choose or reconnect folder…</source>
        <translation>Ordner wählen oder wieder verbinden …</translation>
    </message>
    <message>
        <source>Choose your cheat sheet folder or restore access to an existing folder</source>
        <translation>Den Ordner Ihrer Spickzettel wählen oder den Zugriff auf ihn erneuern</translation>
    </message>
    <message>
        <source>Top-level .md and .quillory.json files are shown. Reading never changes your sheets.</source>
        <translation>Gezeigt werden die .md- und .quillory.json-Dateien direkt im Ordner. Lesen ändert Ihre Blätter nie.</translation>
    </message>
</context>
<context>
    <name>Quillory::GestureSection</name>
    <message>
        <source>Double-tap to peek</source>
        <translation>Kurz ansehen durch doppeltes Antippen</translation>
    </message>
    <message>
        <source>Use Shift or Option on its own: tap twice and keep the second press held to see your last-viewed sheet. Your keyboard shortcuts above still work.</source>
        <translation>Umschalt oder Alt für sich allein: Tippen Sie zweimal und halten Sie beim zweiten Mal, um das zuletzt gelesene Blatt zu sehen. Die Tastenkürzel oben gelten weiterhin.</translation>
    </message>
    <message>
        <source>Choose a gesture above to see the steps and set up access. Off keeps modifier gestures disabled.</source>
        <translation>Wählen Sie oben eine Geste, um die Schritte zu sehen und den Zugriff einzurichten. „Aus“ schaltet Gesten ab.</translation>
    </message>
    <message>
        <source>Gesture:</source>
        <translation>Geste:</translation>
    </message>
    <message>
        <source>How to use it</source>
        <translation>So geht es</translation>
    </message>
    <message>
        <source>Keyboard monitoring is allowed</source>
        <translation>Die Tastatur ist zugänglich</translation>
    </message>
    <message>
        <source>Try the gesture in another app. Quillory stays visible while you hold the key and closes when you release it.</source>
        <translation>Versuchen Sie die Geste in einem anderen Programm. Quillory bleibt sichtbar, solange Sie die Taste halten, und schließt, wenn Sie loslassen.</translation>
    </message>
    <message>
        <source>Setup needed: allow Input Monitoring</source>
        <translation>Einrichtung nötig: Diese Sitzung verbirgt die Tasten vor Quillory</translation>
    </message>
    <message>
        <source>macOS requires this to recognize the gesture while you use other apps. Quillory does not record what you type.</source>
        <translation>Um die Geste zu erkennen, während Sie mit anderen Programmen arbeiten, muss Quillory Tasten sehen. Was Sie tippen, zeichnet es nicht auf.</translation>
    </message>
    <message>
        <source>Set Up Input Monitoring…</source>
        <translation>Tastatureinstellungen öffnen …</translation>
    </message>
    <message>
        <source>Show This Quillory App in Finder</source>
        <translation>Quillory in der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Turn on Quillory in Privacy &amp; Security → Input Monitoring. If it is missing, click + and select this Quillory app. Restart Quillory if macOS asks, then check access again.</source>
        <translation>Manche Sitzungen zeigen Tasten nur dem Fenster, dem sie gelten, so die von Wayland. Legen Sie in den Tastatureinstellungen eine eigene Taste für den Befehl „quillory --toggle“ an, oder melden Sie sich in einer X11-Sitzung an und prüfen Sie den Zugriff noch einmal.</translation>
    </message>
    <message>
        <source>Check Access Again</source>
        <translation>Zugriff noch einmal prüfen</translation>
    </message>
    <message>
        <source>Timing and troubleshooting</source>
        <translation>Zeiten und Hilfe</translation>
    </message>
    <message>
        <source>Make the first tap short (under 0.3 seconds). Press again within 0.3 seconds, then hold for at least 0.35 seconds. Use the same physical key for both presses; either left or right works.</source>
        <translation>Tippen Sie zuerst kurz (unter 0,3 Sekunden). Drücken Sie innerhalb von 0,3 Sekunden wieder und halten Sie mindestens 0,35 Sekunden. Nehmen Sie beide Male dieselbe Taste; ob die linke oder die rechte, ist gleich.</translation>
    </message>
    <message>
        <source>Typing before the reader appears or pressing another modifier cancels the gesture. If another utility uses the same gesture, choose the other key or turn one gesture off.</source>
        <translation>Tippen, bevor der Leser erscheint, oder eine andere Umschalttaste bricht die Geste ab. Benutzt ein anderes Programm dieselbe Geste, wählen Sie die andere Taste oder schalten Sie eine der Gesten aus.</translation>
    </message>
    <message>
        <source>Existing Accessibility access also works. After replacing a local build, you may need to renew its permission. Quit other Quillory copies so you test the app you allowed.</source>
        <translation>In einer X11-Sitzung sind Tasten sichtbar, unter Wayland nicht. Beenden Sie andere Exemplare von Quillory, damit Sie das gemeinte ausprobieren.</translation>
    </message>
    <message>
        <source>This session shows a key only to the window that it is meant for, so Quillory can’t see you tap while you use other apps.</source>
        <translation>Diese Sitzung zeigt eine Taste nur dem Fenster, dem sie gilt. Quillory kann daher nicht sehen, dass Sie tippen, während Sie mit anderen Programmen arbeiten.</translation>
    </message>
</context>
<context>
    <name>Quillory::LearningModeBar</name>
    <message>
        <source>Learning Mode is on. Copying is disabled—type commands in your terminal or editor to practise.</source>
        <translation>Der Lernmodus ist an. Kopieren geht nicht – tippen Sie Befehle zum Üben selbst ins Terminal oder in den Editor.</translation>
    </message>
    <message>
        <source>Copy commands for work, or turn on Learning Mode to practise typing them yourself.</source>
        <translation>Kopieren Sie Befehle zum Arbeiten, oder schalten Sie den Lernmodus ein, um das Tippen zu üben.</translation>
    </message>
</context>
<context>
    <name>Quillory::LibrarySearchField</name>
    <message>
        <source>Search library</source>
        <translation>Bibliothek durchsuchen</translation>
    </message>
    <message>
        <source>Filter sheets by title and content (⌘K)</source>
        <translation>Blätter nach Titel und Inhalt filtern (Strg+K)</translation>
    </message>
</context>
<context>
    <name>Quillory::LogindSessionEvents</name>
    <message>
        <source>The reader gives the keyboard back first.</source>
        <translation>Der Leser gibt zuerst die Tastatur zurück.</translation>
    </message>
</context>
<context>
    <name>Quillory::MessageBar</name>
    <message>
        <source>Refresh</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Reload cheat sheets from your library folder</source>
        <translation>Die Blätter im Ordner der Bibliothek neu lesen</translation>
    </message>
    <message>
        <source>Choose folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Choose the folder containing your cheat sheets</source>
        <translation>Den Ordner mit Ihren Spickzetteln wählen</translation>
    </message>
    <message>
        <source>Dismiss message</source>
        <translation>Meldung schließen</translation>
    </message>
    <message>
        <source>Hide this message</source>
        <translation>Diese Meldung ausblenden</translation>
    </message>
</context>
<context>
    <name>Quillory::PinRow</name>
    <message>
        <source>Unpin</source>
        <translation>Loslösen</translation>
    </message>
    <message>
        <source>Remove this sheet’s menu-bar shortcut; keep the sheet file</source>
        <translation>Das Symbol dieses Blatts aus der Leiste nehmen; die Datei bleibt</translation>
    </message>
    <message>
        <source>Unpin %1</source>
        <translation>%1 loslösen</translation>
    </message>
</context>
<context>
    <name>Quillory::PinSection</name>
    <message>
        <source>Pinned sheets</source>
        <translation>Angeheftete Blätter</translation>
    </message>
    <message>
        <source>Pin a sheet in the reader to give it its own menu-bar icon.</source>
        <translation>Heften Sie ein Blatt im Leser an, und es bekommt ein eigenes Symbol in der Leiste.</translation>
    </message>
    <message>
        <source>Unpinning only removes the icon. Missing sheets are hidden until available again.</source>
        <translation>Loslösen entfernt nur das Symbol. Fehlende Blätter bleiben verborgen, bis sie wieder da sind.</translation>
    </message>
</context>
<context>
    <name>Quillory::PortalRequest</name>
    <message>
        <source>The desktop could not do it.</source>
        <translation>Der Desktop konnte es nicht tun.</translation>
    </message>
</context>
<context>
    <name>Quillory::ReaderSection</name>
    <message>
        <source>Reader</source>
        <translation>Leser</translation>
    </message>
    <message>
        <source>Learning Mode</source>
        <translation>Lernmodus</translation>
    </message>
    <message>
        <source>Disable copying from all sheets to practise typing commands. Remembered across restarts; turn off any time to copy again.</source>
        <translation>Schaltet das Kopieren aus allen Blättern ab, um das Tippen von Befehlen zu üben. Bleibt über Neustarts erhalten; ausschalten geht jederzeit.</translation>
    </message>
    <message>
        <source>Text size</source>
        <translation>Schriftgröße</translation>
    </message>
    <message>
        <source>The reader opens in a floating window and remembers its size and position. Peek keeps it visible while held and hides it on release, even if it was already open.</source>
        <translation>Der Leser öffnet sich in einem schwebenden Fenster und merkt sich Größe und Ort. Kurz ansehen zeigt ihn, solange gehalten wird, und verbirgt ihn beim Loslassen, auch wenn er schon offen war.</translation>
    </message>
    <message>
        <source>Symbols</source>
        <translation>Zeichen</translation>
    </message>
    <message>
        <source>Words, such as Ctrl+Alt+Esc</source>
        <translation>Wörter, etwa Ctrl+Alt+Esc</translation>
    </message>
    <message>
        <source>Key names:</source>
        <translation>Tastennamen:</translation>
    </message>
    <message>
        <source>How structured sheets show, copy and speak keys. Search finds both.</source>
        <translation>Wie strukturierte Blätter Tasten zeigen, kopieren und sprechen. Die Suche findet beides.</translation>
    </message>
</context>
<context>
    <name>Quillory::ReaderTextView</name>
    <message>
        <source>Opens %1</source>
        <translation>Öffnet %1</translation>
    </message>
    <message>
        <source>Cheat sheet content</source>
        <translation>Inhalt des Spickzettels</translation>
    </message>
    <message>
        <source>Copying is disabled in Learning Mode</source>
        <translation>Im Lernmodus ist Kopieren abgeschaltet</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>Quillory::ReadingSide</name>
    <message>
        <source>Open in default editor</source>
        <translation>Im üblichen Editor öffnen</translation>
    </message>
    <message>
        <source>Open the sheet source in your default editor</source>
        <translation>Den Quelltext des Blatts im üblichen Editor öffnen</translation>
    </message>
</context>
<context>
    <name>Quillory::Recorder</name>
    <message>
        <source>Clear shortcut: %1</source>
        <translation>Tastenkürzel löschen: %1</translation>
    </message>
    <message>
        <source>Remove this shortcut</source>
        <translation>Dieses Tastenkürzel entfernen</translation>
    </message>
    <message>
        <source>Record shortcut: %1</source>
        <translation>Tastenkürzel aufnehmen: %1</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Use anyway</source>
        <translation>Trotzdem nehmen</translation>
    </message>
</context>
<context>
    <name>Quillory::SettingsView</name>
    <message>
        <source>This desktop has no keyboard settings that Quillory knows. Any desktop can bind a key of its own to “quillory --toggle”.</source>
        <translation>Quillory kennt keine Tastatureinstellungen dieses Desktops. Jeder Desktop kann eine eigene Taste mit „quillory --toggle“ belegen.</translation>
    </message>
</context>
<context>
    <name>Quillory::SettingsWindow</name>
    <message>
        <source>Quillory Settings</source>
        <translation>Einstellungen von Quillory</translation>
    </message>
</context>
<context>
    <name>Quillory::SheetHeader</name>
    <message>
        <source>Find in sheet</source>
        <translation>Im Blatt suchen</translation>
    </message>
    <message>
        <source>Find text in this sheet (⌘F)</source>
        <translation>Text in diesem Blatt suchen (Strg+F)</translation>
    </message>
    <message>
        <source>Hide search in this sheet</source>
        <translation>Die Suche in diesem Blatt ausblenden</translation>
    </message>
    <message>
        <source>Find in sheet  ⌘F</source>
        <translation>Im Blatt suchen  Strg+F</translation>
    </message>
</context>
<context>
    <name>Quillory::SheetList</name>
    <message>
        <source>Sheets</source>
        <translation>Blätter</translation>
    </message>
    <message>
        <source>Reveal in Finder</source>
        <translation>In der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Show this sheet in Finder</source>
        <translation>Dieses Blatt in der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Open in default editor</source>
        <translation>Im üblichen Editor öffnen</translation>
    </message>
    <message>
        <source>Open the sheet source in your default editor</source>
        <translation>Den Quelltext des Blatts im üblichen Editor öffnen</translation>
    </message>
    <message>
        <source>Unpin</source>
        <translation>Loslösen</translation>
    </message>
    <message>
        <source>Pin to menu bar</source>
        <translation>An die Leiste heften</translation>
    </message>
</context>
<context>
    <name>Quillory::SheetListModel</name>
    <message>
        <source>%1, pinned</source>
        <translation>%1, angeheftet</translation>
    </message>
    <message>
        <source>%1, pinned, with an error</source>
        <translation>%1, angeheftet, mit einem Fehler</translation>
    </message>
    <message>
        <source>%1, with an error</source>
        <translation>%1, mit einem Fehler</translation>
    </message>
</context>
<context>
    <name>Quillory::ShortcutSection</name>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Click a shortcut field, then press your key combination. Use its clear button to remove it.</source>
        <translation>Klicken Sie in ein Feld und drücken Sie dann Ihre Tasten. Der Knopf im Feld löscht sie.</translation>
    </message>
    <message>
        <source>Toggle Quillory:</source>
        <translation>Quillory zeigen und verbergen:</translation>
    </message>
    <message>
        <source>Toggle Quillory</source>
        <translation>Quillory zeigen und verbergen</translation>
    </message>
    <message>
        <source>Press once to show the reader; press again to hide it.</source>
        <translation>Einmal drücken zeigt den Leser, noch einmal verbirgt ihn.</translation>
    </message>
    <message>
        <source>Hold to peek:</source>
        <translation>Halten zum Ansehen:</translation>
    </message>
    <message>
        <source>Hold to peek</source>
        <translation>Halten zum Ansehen</translation>
    </message>
    <message>
        <source>Keep the shortcut keys pressed to read. Release to close, even if the reader was already open.</source>
        <translation>Halten Sie die Tasten, um zu lesen. Loslassen schließt den Leser, auch wenn er schon offen war.</translation>
    </message>
    <message>
        <source>Choose different shortcuts for toggle and peek. Hold to peek is inactive while they match.</source>
        <translation>Wählen Sie zwei verschiedene Tastenkürzel. Solange sie gleich sind, ist „Halten zum Ansehen“ ohne Wirkung.</translation>
    </message>
    <message>
        <source>Inside the reader: ⌘K searches your library; ⌘F finds text in the current sheet.</source>
        <translation>Im Leser: Strg+K durchsucht die Bibliothek, Strg+F den Text des gezeigten Blatts.</translation>
    </message>
    <message>
        <source>Ask the Desktop Again</source>
        <translation>Den Desktop noch einmal fragen</translation>
    </message>
</context>
<context>
    <name>Quillory::Sidebar</name>
    <message>
        <source>YOUR SHEETS</source>
        <translation>IHRE BLÄTTER</translation>
    </message>
    <message>
        <source>No matching sheets</source>
        <translation>Keine passenden Blätter</translation>
    </message>
</context>
<context>
    <name>Quillory::StartSection</name>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Start with your desktop</source>
        <translation>Mit der Arbeitsumgebung starten</translation>
    </message>
    <message>
        <source>Quillory then waits in the background until you call it.</source>
        <translation>Quillory wartet dann im Hintergrund, bis Sie es rufen.</translation>
    </message>
    <message>
        <source>Whether Quillory starts with your desktop could not be changed: %1</source>
        <translation>Ob Quillory mit der Arbeitsumgebung startet, konnte nicht geändert werden: %1</translation>
    </message>
</context>
<context>
    <name>Quillory::StarterSelectionView</name>
    <message>
        <source>Offline starter sheets</source>
        <translation>Beispielblätter ohne Netz</translation>
    </message>
    <message>
        <source>Choose what to add. Existing files are always skipped.</source>
        <translation>Wählen Sie, was hinzukommen soll. Vorhandene Dateien bleiben immer, wie sie sind.</translation>
    </message>
    <message>
        <source>Include the %1 starter sheet when installing</source>
        <translation>Das Beispielblatt %1 mit einrichten</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Close without installing starter sheets</source>
        <translation>Schließen, ohne Beispielblätter einzurichten</translation>
    </message>
    <message>
        <source>Install selected</source>
        <translation>Ausgewählte einrichten</translation>
    </message>
    <message>
        <source>Add selected starter sheets; existing files are skipped</source>
        <translation>Die ausgewählten Beispielblätter hinzufügen; vorhandene Dateien bleiben, wie sie sind</translation>
    </message>
</context>
<context>
    <name>Quillory::TextSizePopover</name>
    <message>
        <source>Text size</source>
        <translation>Schriftgröße</translation>
    </message>
    <message>
        <source>Shortcut symbols stay larger than the text.</source>
        <translation>Die Zeichen der Tastenkürzel bleiben größer als der Text.</translation>
    </message>
    <message>
        <source>%1 pt</source>
        <translation>%1 pt</translation>
    </message>
</context>
<context>
    <name>Quillory::TopBar</name>
    <message>
        <source>Reader text size</source>
        <translation>Schriftgröße des Lesers</translation>
    </message>
    <message>
        <source>Adjust reader text size; shortcut symbols stay larger</source>
        <translation>Die Schriftgröße des Lesers ändern; die Zeichen der Tastenkürzel bleiben größer</translation>
    </message>
    <message>
        <source>Learning Mode</source>
        <translation>Lernmodus</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Open settings for your folder, shortcuts, and reader</source>
        <translation>Einstellungen für Ordner, Tastenkürzel und Leser öffnen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>%1 points</source>
        <translation>%1 Punkt</translation>
    </message>
    <message>
        <source>Turn off Learning Mode to copy commands again</source>
        <translation>Den Lernmodus ausschalten, um wieder Befehle zu kopieren</translation>
    </message>
    <message>
        <source>Turn on Learning Mode to disable copying and practise typing commands</source>
        <translation>Den Lernmodus einschalten, um das Kopieren abzuschalten und das Tippen zu üben</translation>
    </message>
    <message>
        <source>Unpin sheet</source>
        <translation>Blatt loslösen</translation>
    </message>
    <message>
        <source>Pin sheet</source>
        <translation>Blatt anheften</translation>
    </message>
    <message>
        <source>Remove this sheet’s menu-bar shortcut</source>
        <translation>Das Symbol dieses Blatts aus der Leiste nehmen</translation>
    </message>
    <message>
        <source>Add a menu-bar shortcut for this sheet</source>
        <translation>Ein Symbol für dieses Blatt in die Leiste setzen</translation>
    </message>
</context>
<context>
    <name>Quillory::TrayBar</name>
    <message>
        <source>The tray takes %1 items at most. Other pinned sheets don&apos;t show there.</source>
        <translation>Die Leiste nimmt höchstens %1 Symbole auf. Weitere angeheftete Blätter erscheinen dort nicht.</translation>
    </message>
</context>
<context>
    <name>Quillory::UpdateDialog</name>
    <message>
        <source>You have version %1.</source>
        <translation>Installiert ist Version %1.</translation>
    </message>
    <message>
        <source>The update was released on %1.</source>
        <translation>Die Aktualisierung erschien am %1.</translation>
    </message>
    <message>
        <source>The download has %1.</source>
        <translation>Der Download umfasst %1.</translation>
    </message>
    <message>
        <source>This update is important.</source>
        <translation>Diese Aktualisierung ist wichtig.</translation>
    </message>
    <message>
        <source>Update of Quillory</source>
        <translation>Aktualisierung von Quillory</translation>
    </message>
    <message>
        <source>Release notes</source>
        <translation>Neuerungen</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installieren</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Diese Version überspringen</translation>
    </message>
    <message>
        <source>Quillory %1 is available</source>
        <translation>Quillory %1 ist verfügbar</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Fetching the update…</source>
        <translation>Die Aktualisierung wird geladen…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>The update is with the system&apos;s installer</source>
        <translation>Die Aktualisierung liegt beim Installationsprogramm des Systems</translation>
    </message>
    <message>
        <source>It may ask you to confirm, and for your password.</source>
        <translation>Es fragt vielleicht nach einer Bestätigung und nach Ihrem Passwort.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>No update this time</source>
        <translation>Diesmal keine Aktualisierung</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Aktualisierungen</translation>
    </message>
</context>
<context>
    <name>Quillory::UpdateSettingsView</name>
    <message>
        <source>Automatically check for updates</source>
        <translation>Automatisch nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Checking for updates</source>
        <translation>Suche nach Aktualisierungen</translation>
    </message>
    <message>
        <source>Last checked %1 at %2</source>
        <comment>a date and a time of day</comment>
        <translation>Zuletzt gesucht am %1 um %2</translation>
    </message>
</context>
<context>
    <name>ReaderTextView</name>
    <message>
        <source>Copying is disabled in Learning Mode</source>
        <translation>Im Lernmodus ist Kopieren abgeschaltet</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
    <message>
        <source>Copy command</source>
        <translation>Befehl kopieren</translation>
    </message>
    <message>
        <source>Copy %1</source>
        <translation>%1 kopieren</translation>
    </message>
</context>
<context>
    <name>ReaderView</name>
    <message numerus="yes">
        <source>%n more icon warnings.</source>
        <translation>
            <numerusform>%n weitere Warnung zu Symbolen.</numerusform>
            <numerusform>%n weitere Warnungen zu Symbolen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Quillory JSON · format checked</source>
        <translation>Quillory-JSON · Format geprüft</translation>
    </message>
    <message>
        <source>Local Markdown · viewing only</source>
        <translation>Lokales Markdown · nur zum Lesen</translation>
    </message>
    <message>
        <source>Showing the last readable version.</source>
        <translation>Gezeigt wird die letzte lesbare Fassung.</translation>
    </message>
</context>
<context>
    <name>Recorder</name>
    <message>
        <source>Press shortcut…</source>
        <translation>Tasten drücken …</translation>
    </message>
    <message>
        <source>Record shortcut</source>
        <translation>Tastenkürzel aufnehmen</translation>
    </message>
    <message>
        <source>This shortcut can’t be registered: the keyboard lacks one of its keys.</source>
        <translation>Dieses Tastenkürzel geht nicht: Der Tastatur fehlt eine seiner Tasten.</translation>
    </message>
    <message>
        <source>Another program holds this shortcut.</source>
        <translation>Ein anderes Programm hat dieses Tastenkürzel.</translation>
    </message>
    <message>
        <source>Quillory can have it once that program lets it go. Until then, choose another one.</source>
        <translation>Quillory kann es bekommen, sobald jenes Programm es freigibt. Wählen Sie bis dahin ein anderes.</translation>
    </message>
    <message>
        <source>Quillory itself uses this shortcut for “%1”.</source>
        <translation>Quillory selbst benutzt dieses Tastenkürzel für „%1“.</translation>
    </message>
    <message>
        <source>Your desktop uses this shortcut already.</source>
        <translation>Ihr Desktop benutzt dieses Tastenkürzel schon.</translation>
    </message>
    <message>
        <source>Its shortcuts can be changed in the keyboard settings of the desktop.</source>
        <translation>Seine Tastenkürzel lassen sich in den Tastatureinstellungen des Desktops ändern.</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>%1 (unavailable)</source>
        <translation>%1 (nicht verfügbar)</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Option</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Connected folder: %1</source>
        <translation>Verbundener Ordner: %1</translation>
    </message>
    <message>
        <source>No folder connected</source>
        <translation>Kein Ordner verbunden</translation>
    </message>
    <message>
        <source>1. Tap %1 once and release.</source>
        <translation>1. Tippen Sie %1 einmal an.</translation>
    </message>
    <message>
        <source>2. Quickly press the same %1 key again and hold until the reader appears.</source>
        <translation>2. Drücken Sie dieselbe %1-Taste gleich wieder und halten Sie sie, bis der Leser erscheint.</translation>
    </message>
    <message>
        <source>3. Release %1 to close the reader.</source>
        <translation>3. Lassen Sie %1 los, um den Leser zu schließen.</translation>
    </message>
    <message>
        <source>Turn off Learning Mode to copy commands again</source>
        <translation>Den Lernmodus ausschalten, um wieder Befehle zu kopieren</translation>
    </message>
    <message>
        <source>Turn on Learning Mode to disable copying and practise typing commands</source>
        <translation>Den Lernmodus einschalten, um das Kopieren abzuschalten und das Tippen zu üben</translation>
    </message>
    <message>
        <source>Text size: %1</source>
        <translation>Schriftgröße: %1</translation>
    </message>
    <message>
        <source>Your desktop has bound no keys to this.</source>
        <translation>Ihr Desktop hat dafür keine Tasten belegt.</translation>
    </message>
    <message>
        <source>Your desktop has bound this to %1.</source>
        <translation>Ihr Desktop hat dafür %1 belegt.</translation>
    </message>
    <message>
        <source>Quillory has asked your desktop for these keys.</source>
        <translation>Quillory hat Ihren Desktop um diese Tasten gebeten.</translation>
    </message>
    <message>
        <source>In this session your desktop decides which keys call the reader. They can be changed in its settings.</source>
        <translation>In dieser Sitzung entscheidet Ihr Desktop, welche Tasten den Leser rufen. In seinen Einstellungen lassen sie sich ändern.</translation>
    </message>
    <message>
        <source>Your desktop has given Quillory no keys. Ask again, or bind a key of yours to the command “quillory --toggle” in its settings; “quillory --keys” tells how.</source>
        <translation>Ihr Desktop hat Quillory keine Tasten gegeben. Fragen Sie noch einmal, oder belegen Sie in seinen Einstellungen eine eigene Taste mit dem Befehl „quillory --toggle“; „quillory --keys“ sagt, wie.</translation>
    </message>
    <message>
        <source>This session hides keys from programs, and this desktop has no service that binds them. Bind a key of yours to the command “quillory --toggle” in its settings; “quillory --keys” tells how.</source>
        <translation>Diese Sitzung verbirgt Tasten vor Programmen, und dieser Desktop hat keinen Dienst, der sie belegt. Belegen Sie in seinen Einstellungen eine eigene Taste mit dem Befehl „quillory --toggle“; „quillory --keys“ sagt, wie.</translation>
    </message>
</context>
<context>
    <name>SheetRequests</name>
    <message>
        <source>There is no sheet “%1”.</source>
        <translation>Es gibt kein Blatt „%1“.</translation>
    </message>
    <message>
        <source>Several sheets are called “%1”: %2.</source>
        <translation>Mehrere Blätter heißen „%1“: %2.</translation>
    </message>
    <message>
        <source>The folder is still being read.</source>
        <translation>Der Ordner wird noch gelesen.</translation>
    </message>
</context>
<context>
    <name>ShortcutSheet</name>
    <message>
        <source>Invalid Quillory JSON — %1</source>
        <translation>Ungültiges Quillory-JSON — %1</translation>
    </message>
    <message>
        <source>not valid JSON</source>
        <translation>kein gültiges JSON</translation>
    </message>
    <message>
        <source>unexpected character U+0000</source>
        <translation>unerwartetes Zeichen U+0000</translation>
    </message>
    <message>
        <source>an integer</source>
        <translation>eine ganze Zahl</translation>
    </message>
    <message>
        <source>a string</source>
        <translation>eine Zeichenkette</translation>
    </message>
    <message>
        <source>an object</source>
        <translation>ein Objekt</translation>
    </message>
    <message>
        <source>an array</source>
        <translation>eine Liste</translation>
    </message>
    <message>
        <source>expected %1 but found %2</source>
        <translation>erwartet: %1, gefunden: %2</translation>
    </message>
    <message>
        <source>the number %1 does not fit an integer</source>
        <translation>die Zahl %1 passt in keine ganze Zahl</translation>
    </message>
    <message>
        <source>a boolean</source>
        <translation>ein Wahrheitswert</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>eine Zahl</translation>
    </message>
    <message>
        <source>the number %1</source>
        <translation>die Zahl %1</translation>
    </message>
    <message>
        <source>the required key is missing</source>
        <translation>der nötige Schlüssel fehlt</translation>
    </message>
    <message>
        <source>%1 at line %2, column %3</source>
        <translation>%1 in Zeile %2, Spalte %3</translation>
    </message>
    <message>
        <source>number out of range</source>
        <translation>Zahl außerhalb des Bereichs</translation>
    </message>
    <message>
        <source>exceeds %1 characters</source>
        <translation>länger als %1 Zeichen</translation>
    </message>
    <message>
        <source>must not be empty</source>
        <translation>darf nicht leer sein</translation>
    </message>
    <message>
        <source>unsupported version; expected 1</source>
        <translation>unbekannte Version; erwartet: 1</translation>
    </message>
    <message>
        <source>expected 1–100 sections</source>
        <translation>erwartet: 1–100 Abschnitte</translation>
    </message>
    <message>
        <source>maximum 2000 entries per sheet</source>
        <translation>höchstens 2000 Einträge je Blatt</translation>
    </message>
    <message>
        <source>duplicate section ID</source>
        <translation>doppelte ID eines Abschnitts</translation>
    </message>
    <message>
        <source>maximum 200 entries per section</source>
        <translation>höchstens 200 Einträge je Abschnitt</translation>
    </message>
    <message>
        <source>duplicate entry ID</source>
        <translation>doppelte ID eines Eintrags</translation>
    </message>
    <message>
        <source>maximum 4 alternatives</source>
        <translation>höchstens 4 Alternativen</translation>
    </message>
    <message>
        <source>expected 1–8 steps</source>
        <translation>erwartet: 1–8 Schritte</translation>
    </message>
    <message>
        <source>unknown key; use one printable character or a documented key name</source>
        <translation>unbekannte Taste; nehmen Sie ein druckbares Zeichen oder einen beschriebenen Tastennamen</translation>
    </message>
    <message>
        <source>duplicate modifier</source>
        <translation>doppelte Umschalttaste</translation>
    </message>
    <message>
        <source>unknown modifier</source>
        <translation>unbekannte Umschalttaste</translation>
    </message>
</context>
<context>
    <name>StartOffer</name>
    <message>
        <source>Quillory can start with your desktop: turn it on in the settings.</source>
        <translation>Quillory kann mit der Arbeitsumgebung starten: Schalten Sie es in den Einstellungen ein.</translation>
    </message>
</context>
<context>
    <name>StartOptions</name>
    <message>
        <source>Quillory already runs but does not answer. End that process and start it again.</source>
        <translation>Quillory läuft schon, antwortet aber nicht. Beenden Sie jenen Prozess und starten Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Quillory already runs and has its settings in memory. End it first, by Ctrl+Q in the reader.</source>
        <translation>Quillory läuft schon und hat seine Einstellungen im Speicher. Beenden Sie es zuerst, mit Strg+Q im Leser.</translation>
    </message>
    <message>
        <source>Press %1 to call the reader, and again to send it away.</source>
        <translation>%1 ruft den Leser und schickt ihn wieder weg.</translation>
    </message>
    <message>
        <source>No shortcut calls the reader. Start the program again to open it.</source>
        <translation>Kein Tastenkürzel ruft den Leser. Starten Sie das Programm noch einmal, um ihn zu öffnen.</translation>
    </message>
    <message>
        <source>Hold %1 to peek: the reader stays while the keys are down.</source>
        <translation>Halten Sie %1, um kurz hineinzusehen: Der Leser bleibt, solange die Tasten gedrückt sind.</translation>
    </message>
    <message>
        <source>No shortcut peeks.</source>
        <translation>Kein Tastenkürzel zum kurzen Ansehen.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; can&apos;t be connected: %2</source>
        <translation>„%1“ lässt sich nicht verbinden: %2</translation>
    </message>
    <message>
        <source>Show the reader, or send it away.</source>
        <translation>Den Leser zeigen oder wegschicken.</translation>
    </message>
    <message>
        <source>Open the settings.</source>
        <translation>Die Einstellungen öffnen.</translation>
    </message>
    <message>
        <source>Connect this folder of sheets.</source>
        <translation>Diesen Ordner mit Blättern verbinden.</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Connect this folder of sheets where none is connected.</source>
        <translation>Diesen Ordner verbinden, wo keiner verbunden ist.</translation>
    </message>
    <message>
        <source>Peek by tapping this key twice and holding it: shift, option (Alt) or off.</source>
        <translation>Kurz ansehen durch zweimaliges Tippen und Halten dieser Taste: shift, option (Alt) oder off.</translation>
    </message>
    <message>
        <source>key</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>Store Ctrl+Alt+K to call the reader and Ctrl+Alt+J to peek, each where none is stored.</source>
        <translation>Strg+Alt+K zum Rufen des Lesers und Strg+Alt+J zum Ansehen speichern, jeweils wo nichts gespeichert ist.</translation>
    </message>
    <message>
        <source>Shows your own cheat sheets over whatever is in front.</source>
        <translation>Zeigt Ihre eigenen Spickzettel über allem, was vorn ist.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no option. To connect a folder, write --connect &quot;%1&quot;.</source>
        <translation>„%1“ ist kein Schalter. Um einen Ordner zu verbinden, schreiben Sie --connect &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no gesture: it is shift, option or off.</source>
        <translation>„%1“ ist keine Geste: möglich sind shift, option oder off.</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Start without a window, or do nothing where Quillory already runs.</source>
        <translation>Ohne Fenster starten, oder nichts tun, wo Quillory schon läuft.</translation>
    </message>
    <message>
        <source>Show the reader, or bring it to the front.</source>
        <translation>Den Leser zeigen oder nach vorn holen.</translation>
    </message>
    <message>
        <source>Show the reader until --peek-end.</source>
        <translation>Den Leser bis --peek-end zeigen.</translation>
    </message>
    <message>
        <source>keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>End a peek.</source>
        <translation>Das kurze Ansehen beenden.</translation>
    </message>
    <message>
        <source>Show the sheet with this title or file name.</source>
        <translation>Das Blatt mit diesem Titel oder Dateinamen zeigen.</translation>
    </message>
    <message>
        <source>sheet</source>
        <translation>Blatt</translation>
    </message>
    <message>
        <source>The options ask for more than one thing at once.</source>
        <translation>Die Optionen verlangen mehr als eines auf einmal.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; are no keys to hold: these are ctrl, alt, shift and super, joined by &quot;+&quot;.</source>
        <translation>„%1“ sind keine Tasten, die man halten kann: das sind ctrl, alt, shift und super, verbunden mit „+“.</translation>
    </message>
    <message>
        <source>--held belongs to --peek.</source>
        <translation>--held gehört zu --peek.</translation>
    </message>
    <message>
        <source>With --peek: the keys that hold it, such as ctrl+alt. The peek also ends when they are released.</source>
        <translation>Mit --peek: die Tasten, die dafür gehalten werden, etwa ctrl+alt. Sind sie losgelassen, endet es auch ohne --peek-end.</translation>
    </message>
    <message>
        <source>Quillory stands in a folder whose name has unusual characters. Make it known as &quot;quillory&quot; by a link in a folder of PATH.</source>
        <translation>Quillory liegt in einem Ordner, dessen Name ungewöhnliche Zeichen hat. Machen Sie es durch eine Verknüpfung in einem Ordner von PATH als „quillory“ bekannt.</translation>
    </message>
    <message>
        <source>Print what binds the shortcuts on this desktop: %1.</source>
        <translation>Ausgeben, was die Tastenkürzel auf diesem Desktop belegt: %1.</translation>
    </message>
    <message>
        <source>desktop</source>
        <translation>Desktop</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no desktop that is known here: these are %2.</source>
        <translation>„%1“ ist kein Desktop, der hier bekannt ist: das sind %2.</translation>
    </message>
    <message>
        <source>Bind a key of yours to “quillory --toggle” in the settings of your desktop.</source>
        <translation>Belegen Sie in den Einstellungen Ihres Desktops eine eigene Taste mit „quillory --toggle“.</translation>
    </message>
</context>
<context>
    <name>TakenShortcuts</name>
    <message>
        <source>%1 is used by another program.</source>
        <translation>%1 wird von einem anderen Programm benutzt.</translation>
    </message>
    <message>
        <source>Your desktop has given Quillory no keys. The settings tell how to call the reader without them.</source>
        <translation>Ihr Desktop hat Quillory keine Tasten gegeben. Die Einstellungen sagen, wie Sie den Leser ohne sie rufen.</translation>
    </message>
    <message>
        <source>Your desktop’s service for keys has ended. Quillory’s keys work again once it is back.</source>
        <translation>Der Dienst Ihres Desktops für Tasten ist beendet. Quillorys Tasten gehen wieder, sobald er zurück ist.</translation>
    </message>
</context>
<context>
    <name>Updates</name>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>Updates are not looked for.</source>
        <translation>Nach Aktualisierungen wird nicht gesucht.</translation>
    </message>
    <message>
        <source>Quillory could not look for updates. %1</source>
        <translation>Quillory konnte nicht nach Aktualisierungen suchen. %1</translation>
    </message>
    <message>
        <source>The list of releases names an address that is not secure.</source>
        <translation>Die Liste der Versionen nennt eine Adresse, die nicht sicher ist.</translation>
    </message>
    <message>
        <source>The update could not be fetched. %1</source>
        <translation>Die Aktualisierung konnte nicht geladen werden. %1</translation>
    </message>
    <message>
        <source>No application takes the package. %1</source>
        <translation>Keine Anwendung nimmt das Paket an. %1</translation>
    </message>
    <message>
        <source>The package was handed to the application that opens it.</source>
        <translation>Das Paket wurde der Anwendung übergeben, die es öffnet.</translation>
    </message>
    <message>
        <source>The update was not installed. %1</source>
        <translation>Die Aktualisierung wurde nicht installiert. %1</translation>
    </message>
    <message>
        <source>Quillory %1 is installed. It runs after the next start.</source>
        <translation>Quillory %1 ist installiert und läuft ab dem nächsten Start.</translation>
    </message>
    <message>
        <source>Quillory %1 is the newest version.</source>
        <translation>Quillory %1 ist die neueste Version.</translation>
    </message>
    <message>
        <source>Closed: %1</source>
        <translation>Geschlossen: %1</translation>
    </message>
    <message>
        <source>The list of releases has no valid signature.</source>
        <translation>Die Liste der Versionen hat keine gültige Unterschrift.</translation>
    </message>
    <message>
        <source>The list of releases is signed by somebody else.</source>
        <translation>Die Liste der Versionen hat jemand anderes unterschrieben.</translation>
    </message>
    <message>
        <source>The list of releases is not the one that was signed.</source>
        <translation>Die Liste der Versionen ist nicht die, die unterschrieben wurde.</translation>
    </message>
    <message>
        <source>The signature belongs to another file.</source>
        <translation>Die Unterschrift gehört zu einer anderen Datei.</translation>
    </message>
    <message>
        <source>The list of releases can&apos;t be read.</source>
        <translation>Die Liste der Versionen ist nicht lesbar.</translation>
    </message>
    <message>
        <source>The list of releases declares a document type, which is not allowed.</source>
        <translation>Die Liste der Versionen erklärt einen Dokumenttyp, was nicht erlaubt ist.</translation>
    </message>
    <message>
        <source>The list of releases is too large.</source>
        <translation>Die Liste der Versionen ist zu groß.</translation>
    </message>
    <message>
        <source>The list of releases has a version that is none.</source>
        <translation>Die Liste der Versionen nennt eine Version, die keine ist.</translation>
    </message>
    <message>
        <source>The list of releases has a package without address, size or checksum.</source>
        <translation>Die Liste der Versionen nennt ein Paket ohne Adresse, Größe oder Prüfsumme.</translation>
    </message>
    <message>
        <source>The list of releases is older than the one seen last.</source>
        <translation>Die Liste der Versionen ist älter als die zuletzt gesehene.</translation>
    </message>
    <message>
        <source>The list of releases was signed at a time that is still to come. Check this computer&apos;s clock.</source>
        <translation>Die Liste der Versionen wurde zu einer Zeit unterschrieben, die noch nicht gekommen ist. Prüfen Sie die Uhr dieses Rechners.</translation>
    </message>
    <message>
        <source>The package can&apos;t be stored: %1</source>
        <translation>Das Paket lässt sich nicht speichern: %1</translation>
    </message>
    <message>
        <source>The package has another size than the list of releases tells.</source>
        <translation>Das Paket hat eine andere Größe, als die Liste der Versionen nennt.</translation>
    </message>
    <message>
        <source>The package is not the one that the list of releases tells of.</source>
        <translation>Das Paket ist nicht das, welches die Liste der Versionen nennt.</translation>
    </message>
    <message>
        <source>The server sent the request on to an address that is not secure.</source>
        <translation>Der Server hat die Anfrage an eine Adresse weitergeleitet, die nicht sicher ist.</translation>
    </message>
    <message>
        <source>The server can&apos;t be reached.</source>
        <translation>Der Server ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The connection to the server is not secure.</source>
        <translation>Die Verbindung zum Server ist nicht sicher.</translation>
    </message>
    <message>
        <source>The server does not have the file.</source>
        <translation>Der Server hat die Datei nicht.</translation>
    </message>
    <message>
        <source>The server took too long to answer.</source>
        <translation>Der Server hat zu lange nicht geantwortet.</translation>
    </message>
    <message>
        <source>The file on the server is too large.</source>
        <translation>Die Datei auf dem Server ist zu groß.</translation>
    </message>
    <message>
        <source>The connection ended early.</source>
        <translation>Die Verbindung ist vorzeitig abgebrochen.</translation>
    </message>
    <message>
        <source>The download was stopped.</source>
        <translation>Das Herunterladen wurde abgebrochen.</translation>
    </message>
</context>
<context>
    <name>X11Connection</name>
    <message>
        <source>There is no X display: DISPLAY is not set.</source>
        <translation>Es gibt keine X-Anzeige: DISPLAY ist nicht gesetzt.</translation>
    </message>
    <message>
        <source>The X display %1 can&apos;t be reached.</source>
        <translation>Die X-Anzeige %1 ist nicht erreichbar.</translation>
    </message>
</context>
</TS>
