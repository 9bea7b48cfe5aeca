<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>CDSVersion</name>
    <message>
        <source>Download failed</source>
        <translation>Download fehlgeschlagen</translation>
    </message>
    <message>
        <source>Failed download file:</source>
        <translation>Download fehlgeschlagen, Datei:</translation>
    </message>
    <message>
        <source>Download success</source>
        <translation>Download erfolgreich</translation>
    </message>
    <message>
        <source>Download success file:</source>
        <translation>Download erfolgreich, Datei:</translation>
    </message>
    <message>
        <source>Download failed!</source>
        <translation>Download fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Dataset: </source>
        <translation>Datensatz: </translation>
    </message>
    <message>
        <source>Install failed</source>
        <translation>Installation fehlgeschlagen</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>nicht gefunden</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Install success</source>
        <translation>Installation erfolgreich</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>for</source>
        <translation>für</translation>
    </message>
    <message>
        <source>Reset failed</source>
        <translation>Zurücksetzen fehlgeschlagen</translation>
    </message>
    <message>
        <source>Remove backup failed</source>
        <translation>Löschen des Backups fehlgeschlagen</translation>
    </message>
    <message>
        <source>Reset success</source>
        <translation>Zurücksetzen erfolgreich</translation>
    </message>
    <message>
        <source>Remove backup success</source>
        <translation>Backup erfolgreich gelöscht</translation>
    </message>
    <message>
        <source>not removed, outside the product:</source>
        <translation>nicht entfernt, liegt außerhalb des Produkts:</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>A run record that cannot be read was left alone:</source>
        <translation>Ein unlesbarer Ablaufvermerk wurde nicht angerührt:</translation>
    </message>
    <message>
        <source>The interrupted install of %1 was completed.</source>
        <translation>Die unterbrochene Installation von %1 wurde abgeschlossen.</translation>
    </message>
    <message>
        <source>The interrupted install of %1 was undone; its files are as they were before.</source>
        <translation>Die unterbrochene Installation von %1 wurde rückgängig gemacht; die Dateien sind wie zuvor.</translation>
    </message>
    <message>
        <source>The interrupted install of %1 could not be undone completely; see the log.</source>
        <translation>Die unterbrochene Installation von %1 konnte nicht vollständig rückgängig gemacht werden; siehe Protokoll.</translation>
    </message>
    <message>
        <source>The interrupted install of %1 made no backups and cannot be undone; install it again.</source>
        <translation>Die unterbrochene Installation von %1 hat keine Backups angelegt und kann nicht rückgängig gemacht werden; bitte erneut installieren.</translation>
    </message>
    <message>
        <source>The interrupted reset of %1 waits for the reset in progress.</source>
        <translation>Das unterbrochene Zurücksetzen von %1 wartet auf das laufende Zurücksetzen.</translation>
    </message>
    <message>
        <source>The interrupted reset of %1 was completed.</source>
        <translation>Das unterbrochene Zurücksetzen von %1 wurde abgeschlossen.</translation>
    </message>
    <message>
        <source>The interrupted reset of %1 could not be completed; see the log.</source>
        <translation>Das unterbrochene Zurücksetzen von %1 konnte nicht abgeschlossen werden; siehe Protokoll.</translation>
    </message>
</context>
<context>
    <name>CDataModel</name>
    <message>
        <source>Couldn&apos;t open bin/base_ini.xml</source>
        <translation>bin/base_ini.xml konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Error! Init base</source>
        <translation>Fehler! Katalog laden</translation>
    </message>
    <message>
        <source>Couldn&apos;t open prop_ini.xml</source>
        <translation>prop_ini.xml konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>corrupted file: prop_ini.xml </source>
        <translation>beschädigte Datei: prop_ini.xml </translation>
    </message>
    <message>
        <source>Couldn&apos;t delete prop_ini.xml</source>
        <translation>prop_ini.xml konnte nicht gelöscht werden</translation>
    </message>
    <message>
        <source>The last run of Quillmark was cut off during an update or a reset:</source>
        <translation>Quillmark wurde beim letzten Mal während einer Aktualisierung oder eines Zurücksetzens unterbrochen:</translation>
    </message>
    <message>
        <source>The Product-Select-List ist empty.</source>
        <translation>Die Produktauswahl ist leer.</translation>
    </message>
    <message>
        <source>Please select products for reset.</source>
        <translation>Bitte wählen Sie Produkte zum Zurücksetzen aus.</translation>
    </message>
    <message>
        <source>Please select products for remove backup.</source>
        <translation>Bitte wählen Sie Produkte zum Löschen der Backups aus.</translation>
    </message>
</context>
<context>
    <name>CFailureReason</name>
    <message>
        <source>No answer from %1: the server name was not found. Check your internet connection and the server address.</source>
        <translation>Keine Antwort von %1: Der Servername wurde nicht gefunden. Prüfen Sie die Internetverbindung und die Serveradresse.</translation>
    </message>
    <message>
        <source>%1 refused the connection: the server is down. Try again later.</source>
        <translation>%1 hat die Verbindung abgelehnt: Der Server ist nicht in Betrieb. Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>%1 did not answer in time. Check your internet connection, or try again later.</source>
        <translation>%1 hat nicht rechtzeitig geantwortet. Prüfen Sie die Internetverbindung oder versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>No secure connection to %1 could be made. Check the computer&apos;s date and time, or try another network.</source>
        <translation>Zu %1 konnte keine sichere Verbindung aufgebaut werden. Prüfen Sie Datum und Uhrzeit des Computers oder versuchen Sie ein anderes Netzwerk.</translation>
    </message>
    <message>
        <source>No answer from %1: the server is down or you are offline. Check your internet connection, or try again later.</source>
        <translation>Keine Antwort von %1: Der Server ist nicht in Betrieb oder Sie sind offline. Prüfen Sie die Internetverbindung oder versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>The connection to %1 broke off during the download. Try again.</source>
        <translation>Die Verbindung zu %1 ist während des Downloads abgebrochen. Versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>%1 refused the credentials (HTTP %2). Check that your subscription is active, or contact support.</source>
        <translation>%1 hat die Zugangsdaten abgelehnt (HTTP %2). Prüfen Sie, ob Ihr Abonnement aktiv ist, oder wenden Sie sich an den Support.</translation>
    </message>
    <message>
        <source>%1 does not have the file %2 (HTTP 404). It may not be published yet: try again later.</source>
        <translation>%1 hat die Datei %2 nicht (HTTP 404). Vielleicht ist sie noch nicht veröffentlicht: Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>%1 had a server error (HTTP %2). Try again later.</source>
        <translation>%1 meldet einen Serverfehler (HTTP %2). Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>%1 answered with an error (HTTP %2). Try again later.</source>
        <translation>%1 hat mit einem Fehler geantwortet (HTTP %2). Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>The download could not be saved (%1). Free some disk space, or make the folder writable.</source>
        <translation>Der Download konnte nicht gespeichert werden (%1). Schaffen Sie Platz auf dem Datenträger oder machen Sie den Ordner beschreibbar.</translation>
    </message>
</context>
<context>
    <name>CQMKVersion</name>
    <message>
        <source>Missing file </source>
        <translation>Fehlende Datei </translation>
    </message>
</context>
<context>
    <name>CvlFilterCmb</name>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
</context>
<context>
    <name>CvlHelpButton</name>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
</context>
<context>
    <name>CvlRemoveBackupButton</name>
    <message>
        <source>RemoveBackup</source>
        <translation>Backup löschen</translation>
    </message>
</context>
<context>
    <name>CvlResetButton</name>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
</context>
<context>
    <name>CvlSettingsButton</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>CvlUpdateButton</name>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
</context>
<context>
    <name>DlgBase</name>
    <message>
        <source>About Quillmark</source>
        <translation>Über Quillmark</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Quillmark Update</source>
        <translation>Quillmark-Aktualisierung</translation>
    </message>
    <message>
        <source>Product-Dataset Update</source>
        <translation>Produkt-Datensätze aktualisieren</translation>
    </message>
    <message>
        <source>Product-Dataset Reset</source>
        <translation>Produkt-Datensätze zurücksetzen</translation>
    </message>
    <message>
        <source>Product-Dataset RemoveBackup</source>
        <translation>Produkt-Backups löschen</translation>
    </message>
</context>
<context>
    <name>DlgDatasetRun</name>
    <message>
        <source>Products:</source>
        <translation>Produkte:</translation>
    </message>
    <message>
        <source>Show Product-Select-List</source>
        <translation>Produktauswahl zeigen</translation>
    </message>
    <message>
        <source>Hide Product-Select-List</source>
        <translation>Produktauswahl ausblenden</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Attention:</source>
        <translation>Achtung:</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>DlgHelp</name>
    <message>
        <source>Quillmark %1</source>
        <translation>Quillmark %1</translation>
    </message>
    <message>
        <source>Quillmark keeps the navigation data (AIRAC cycles) of your flight-simulator add-ons up to date: it downloads the newest cycle, installs it with a backup of every replaced file, and can restore or remove those backups.</source>
        <translation>Quillmark hält die Navigationsdaten (AIRAC-Zyklen) Ihrer Flugsimulator-Add-ons aktuell: Es lädt den neuesten Zyklus herunter, installiert ihn mit einem Backup jeder ersetzten Datei und kann diese Backups zurückspielen oder löschen.</translation>
    </message>
    <message>
        <source>Server: %1</source>
        <translation>Server: %1</translation>
    </message>
    <message>
        <source>Settings: %1</source>
        <translation>Einstellungen: %1</translation>
    </message>
    <message>
        <source>Logs: %1</source>
        <translation>Protokolle: %1</translation>
    </message>
    <message>
        <source>Open manual</source>
        <translation>Handbuch öffnen</translation>
    </message>
    <message>
        <source>The manual %1 was not found.</source>
        <translation>Das Handbuch %1 wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>No program to show %1 was found.</source>
        <translation>Es wurde kein Programm gefunden, das %1 anzeigen kann.</translation>
    </message>
    <message>
        <source>Downloads: %1</source>
        <translation>Downloads: %1</translation>
    </message>
    <message>
        <source>Open log folder</source>
        <translation>Protokollordner öffnen</translation>
    </message>
    <message>
        <source>Copy diagnostics</source>
        <translation>Diagnose kopieren</translation>
    </message>
    <message>
        <source>Diagnostics copied to the clipboard.</source>
        <translation>Diagnose in die Zwischenablage kopiert.</translation>
    </message>
</context>
<context>
    <name>DlgRemoveBackup</name>
    <message>
        <source>RemoveBackup Navdata-Files.</source>
        <translation>Backups der Navigationsdateien werden gelöscht.</translation>
    </message>
    <message>
        <source>RemoveBackup</source>
        <translation>Backup löschen</translation>
    </message>
    <message>
        <source>Run RemoveBackup.</source>
        <translation>Backups werden gelöscht.</translation>
    </message>
    <message>
        <source>RemoveBackup ready.</source>
        <translation>Backups gelöscht.</translation>
    </message>
</context>
<context>
    <name>DlgResetDataset</name>
    <message>
        <source>Reset Navdata-Files.</source>
        <translation>Navigationsdateien werden zurückgesetzt.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Run reset.</source>
        <translation>Zurücksetzen läuft.</translation>
    </message>
    <message>
        <source>Reset ready.</source>
        <translation>Zurücksetzen fertig.</translation>
    </message>
</context>
<context>
    <name>DlgVLSettings</name>
    <message>
        <source>Language:</source>
        <translation>Sprache:</translation>
    </message>
    <message>
        <source>Quillmark Update-Manager</source>
        <translation>Quillmark-Aktualisierung</translation>
    </message>
    <message>
        <source>AddOn-Dataset Update-Manager</source>
        <translation>Add-on-Datensätze aktualisieren</translation>
    </message>
    <message>
        <source>auto update</source>
        <translation>automatisch aktualisieren</translation>
    </message>
    <message>
        <source>run updater manually</source>
        <translation>jetzt nach Updates suchen</translation>
    </message>
    <message>
        <source>Restore Quillmark default settings</source>
        <translation>Quillmark-Standardeinstellungen wiederherstellen</translation>
    </message>
</context>
<context>
    <name>QuillmarkMainWindow</name>
    <message>
        <source>Quillmark</source>
        <translation>Quillmark</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Dataset-Filter</source>
        <translation>Datensatz-Filter</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
</context>
<context>
    <name>VlCatLabel</name>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Selected</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>X-Plane 10</source>
        <translation>X-Plane 10</translation>
    </message>
    <message>
        <source>X-Plane 11</source>
        <translation>X-Plane 11</translation>
    </message>
    <message>
        <source>FSX</source>
        <translation>FSX</translation>
    </message>
    <message>
        <source>FS2004</source>
        <translation>FS2004</translation>
    </message>
    <message>
        <source>Prepar3D v2</source>
        <translation>Prepar3D v2</translation>
    </message>
    <message>
        <source>Prepar3D v3</source>
        <translation>Prepar3D v3</translation>
    </message>
    <message>
        <source>Prepar3D v4</source>
        <translation>Prepar3D v4</translation>
    </message>
</context>
<context>
    <name>VlCatPropsLabel</name>
    <message>
        <source>Open Directory</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Category-Properties</source>
        <translation>Kategorie</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Pfad:</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
</context>
<context>
    <name>VlProdLabel</name>
    <message>
        <source>Open Directory</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>nicht gefunden</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>installed</source>
        <translation>installiert</translation>
    </message>
    <message>
        <source>backup</source>
        <translation>Backup</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Pfad:</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>select</source>
        <translation>wählen</translation>
    </message>
    <message>
        <source>Dataset:</source>
        <translation>Datensatz:</translation>
    </message>
    <message>
        <source>Cycle:</source>
        <translation>Zyklus:</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>remove backup files</source>
        <translation>Backup löschen</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>Installing: the newest cycle is being downloaded or installed.</source>
        <translation>Installation läuft: der neueste Zyklus wird geladen oder installiert.</translation>
    </message>
    <message>
        <source>Resetting: the backed-up files are being restored.</source>
        <translation>Zurücksetzen läuft: die gesicherten Dateien werden wiederhergestellt.</translation>
    </message>
    <message>
        <source>Removing the backup files.</source>
        <translation>Die Sicherungsdateien werden gelöscht.</translation>
    </message>
    <message>
        <source>Not checked: the newest cycle is not known yet (the version server was not reached), so the installed cycle cannot be compared with it.</source>
        <translation>Nicht geprüft: der neueste Zyklus ist noch nicht bekannt (der Versionsserver war nicht erreichbar), daher lässt sich der installierte Zyklus nicht damit vergleichen.</translation>
    </message>
    <message>
        <source>Not installed: this product does not hold the newest cycle.</source>
        <translation>Nicht installiert: dieses Produkt hat den neuesten Zyklus nicht.</translation>
    </message>
    <message>
        <source>Installed: this product holds the newest cycle.</source>
        <translation>Installiert: dieses Produkt hat den neuesten Zyklus.</translation>
    </message>
    <message>
        <source>Failed: the last run did not succeed for this product.</source>
        <translation>Fehlgeschlagen: der letzte Lauf ist für dieses Produkt misslungen.</translation>
    </message>
    <message>
        <source>Failed: %1</source>
        <translation>Fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Update due: the installed cycle differs from the newest one, or the last run was stopped.</source>
        <translation>Aktualisierung fällig: der installierte Zyklus weicht vom neuesten ab, oder der letzte Lauf wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Update available.</source>
        <translation>Aktualisierung verfügbar.</translation>
    </message>
</context>
<context>
    <name>dlgUpdateDatasetVersion</name>
    <message>
        <source>Datasets was found:</source>
        <translation>Gefundene Datensätze:</translation>
    </message>
    <message>
        <source>ready for download.</source>
        <translation>bereit zum Herunterladen.</translation>
    </message>
    <message>
        <source>Failed to connect to Velmora-Server.</source>
        <translation>Keine Verbindung zum Velmora-Server.</translation>
    </message>
    <message>
        <source>There are no new updates available.</source>
        <translation>Es sind keine neuen Aktualisierungen verfügbar.</translation>
    </message>
    <message>
        <source>Run download.</source>
        <translation>Download läuft.</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisierung</translation>
    </message>
    <message>
        <source>downloaded.</source>
        <translation>heruntergeladen.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Download failed.</source>
        <translation>Download fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Run install.</source>
        <translation>Installation läuft.</translation>
    </message>
    <message>
        <source>Install ready.</source>
        <translation>Installation fertig.</translation>
    </message>
    <message>
        <source>The Product-Select-List ist empty.</source>
        <translation>Die Produktauswahl ist leer.</translation>
    </message>
    <message>
        <source>Please select products for update.</source>
        <translation>Bitte wählen Sie Produkte zum Aktualisieren aus.</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installieren</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>not found new files</source>
        <translation>keine neuen Dateien gefunden</translation>
    </message>
    <message>
        <source>Overwritten Navdata-Files.</source>
        <translation>Navigationsdateien werden überschrieben.</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>OverwriteAccept</source>
        <translation>Überschreiben erlauben</translation>
    </message>
    <message>
        <source>create cycle backup data</source>
        <translation>Backup des Zyklus anlegen</translation>
    </message>
    <message>
        <source>No cycle from the Velmora-Server</source>
        <translation>Kein Zyklus vom Velmora-Server</translation>
    </message>
    <message>
        <source>Cycle %1 is downloaded and ready to install.</source>
        <translation>Zyklus %1 ist heruntergeladen und bereit zur Installation.</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1 (%2 von %3)</translation>
    </message>
    <message>
        <source>%1 of %2 MB</source>
        <translation>%1 von %2 MB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>Cycle %1 is downloaded but not installed yet.</source>
        <translation>Zyklus %1 ist heruntergeladen, aber noch nicht installiert.</translation>
    </message>
    <message>
        <source>Leave it for later? You can install it from the Update button at any time.</source>
        <translation>Für später aufheben? Sie können ihn jederzeit über die Schaltfläche Aktualisieren installieren.</translation>
    </message>
    <message>
        <source>Leave for later</source>
        <translation>Für später aufheben</translation>
    </message>
    <message>
        <source>Installing %1 (%2 of %3)</source>
        <translation>Installiere %1 (%2 von %3)</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Erneut versuchen</translation>
    </message>
</context>
<context>
    <name>dlgUpdateQMKVersion</name>
    <message>
        <source>Failed to connect to Velmora-Server.</source>
        <translation>Keine Verbindung zum Velmora-Server.</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>ready for download.</source>
        <translation>steht zum Download bereit.</translation>
    </message>
    <message>
        <source>There are no new updates available.</source>
        <translation>Es sind keine neuen Aktualisierungen verfügbar.</translation>
    </message>
    <message>
        <source>No version information was found on the Velmora-Server.</source>
        <translation>Auf dem Velmora-Server wurde keine Versionsangabe gefunden.</translation>
    </message>
    <message>
        <source>Run download.</source>
        <translation>Download läuft.</translation>
    </message>
    <message>
        <source>downloaded.</source>
        <translation>heruntergeladen.</translation>
    </message>
    <message>
        <source>Download failed.</source>
        <translation>Download fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Run unzip.</source>
        <translation>Entpacken läuft.</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Run update now</source>
        <translation>Jetzt aktualisieren</translation>
    </message>
    <message>
        <source>Installation-File not found.</source>
        <translation>Installationsdatei nicht gefunden.</translation>
    </message>
    <message>
        <source>Checking for a new version.</source>
        <translation>Suche nach einer neuen Version.</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Erneut versuchen</translation>
    </message>
</context>
<context>
    <name>wdgBackupLocal</name>
    <message>
        <source>Backup</source>
        <translation>Backup</translation>
    </message>
    <message>
        <source>Create backup info.</source>
        <translation>Sichert die lokalen Zyklusdaten in einem Archiv oder lädt sie daraus zurück.</translation>
    </message>
    <message>
        <source>Create backup</source>
        <translation>Backup erstellen</translation>
    </message>
    <message>
        <source>Load backup</source>
        <translation>Backup laden</translation>
    </message>
    <message>
        <source>backup empty</source>
        <translation>Keine lokalen Zyklusdaten für ein Backup vorhanden.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Run create backup.</source>
        <translation>Backup wird erstellt.</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>nicht gefunden</translation>
    </message>
    <message>
        <source>Run load backup.</source>
        <translation>Backup wird geladen.</translation>
    </message>
    <message>
        <source>successful</source>
        <translation>erfolgreich</translation>
    </message>
</context>
</TS>
