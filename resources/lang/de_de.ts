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
        <translation>Heruntergeladen</translation>
    </message>
    <message>
        <source>Download success file:</source>
        <translation>Download erfolgreich, Datei:</translation>
    </message>
    <message>
        <source>Download failed!</source>
        <translation>Download fehlgeschlagen.</translation>
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
        <translation>Installiert</translation>
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
        <translation>Zurückgesetzt</translation>
    </message>
    <message>
        <source>Remove backup success</source>
        <translation>Backup gelöscht</translation>
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
    <message>
        <source>(mirror %1)</source>
        <translation>(Spiegelserver %1)</translation>
    </message>
    <message>
        <source>%1 not taken from mirror %2:</source>
        <translation>%1 nicht vom Spiegelserver %2 übernommen:</translation>
    </message>
</context>
<context>
    <name>CDataModel</name>
    <message>
        <source>Couldn&apos;t open bin/base_ini.xml</source>
        <translation>Der Katalog bin/base_ini.xml konnte nicht geöffnet werden. Installieren Sie Quillmark neu.</translation>
    </message>
    <message>
        <source>Error! Init base</source>
        <translation>Katalog nicht lesbar</translation>
    </message>
    <message>
        <source>Couldn&apos;t open prop_ini.xml</source>
        <translation>Die Einstellungsdatei prop_ini.xml konnte nicht geschrieben werden. Machen Sie ihren Ordner beschreibbar.</translation>
    </message>
    <message>
        <source>corrupted file: prop_ini.xml </source>
        <translation>Die Einstellungsdatei prop_ini.xml ist beschädigt: </translation>
    </message>
    <message>
        <source>Couldn&apos;t delete prop_ini.xml</source>
        <translation>Die Einstellungsdatei prop_ini.xml konnte nicht gelöscht werden. Machen Sie ihren Ordner beschreibbar.</translation>
    </message>
    <message>
        <source>The last run of Quillmark was cut off during an update or a reset:</source>
        <translation>Quillmark wurde beim letzten Mal während einer Aktualisierung oder eines Zurücksetzens unterbrochen:</translation>
    </message>
    <message>
        <source>The Product-Select-List ist empty.</source>
        <translation>Kein Produkt ist ausgewählt.</translation>
    </message>
    <message>
        <source>Please select products for reset.</source>
        <translation>Haken Sie die zurückzusetzenden Produkte auf ihren Karten an und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Please select products for remove backup.</source>
        <translation>Haken Sie die Produkte an, deren Backups gelöscht werden sollen, und versuchen Sie es erneut.</translation>
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
    <message>
        <source>%1 has no signature for %2, so the file cannot be trusted and was not used. Try again later, or tell the publisher.</source>
        <translation>%1 hat keine Signatur für %2, daher ist der Datei nicht zu trauen und sie wurde nicht verwendet. Versuchen Sie es später erneut, oder benachrichtigen Sie den Herausgeber.</translation>
    </message>
    <message>
        <source>The signature of %2 from %1 did not match: the file was damaged or altered on its way and was not used. Try again later, or tell the publisher.</source>
        <translation>Die Signatur von %2 von %1 passte nicht: Die Datei wurde unterwegs beschädigt oder verändert und nicht verwendet. Versuchen Sie es später erneut, oder benachrichtigen Sie den Herausgeber.</translation>
    </message>
    <message>
        <source>The signature of %2 from %1 did not match: it was made with a key this program does not trust, so the file was not used. Update Quillmark, or tell the publisher.</source>
        <translation>Die Signatur von %2 von %1 passte nicht: Sie wurde mit einem Schlüssel erstellt, dem dieses Programm nicht vertraut, daher wurde die Datei nicht verwendet. Aktualisieren Sie Quillmark, oder benachrichtigen Sie den Herausgeber.</translation>
    </message>
    <message>
        <source>The signature of %2 from %1 did not match: it was made for %3, so the file was not used. Try again later, or tell the publisher.</source>
        <translation>Die Signatur von %2 von %1 passte nicht: Sie wurde für %3 erstellt, daher wurde die Datei nicht verwendet. Versuchen Sie es später erneut, oder benachrichtigen Sie den Herausgeber.</translation>
    </message>
    <message>
        <source>The version list from %1 was signed on %2, before the one already accepted (%3): an old list is being replayed, or the server is out of date. It was not used. Try again later.</source>
        <translation>Die Versionsliste von %1 wurde am %2 signiert, vor der bereits angenommenen (%3): Eine alte Liste wird erneut ausgespielt, oder der Server ist nicht aktuell. Sie wurde nicht verwendet. Versuchen Sie es später erneut.</translation>
    </message>
</context>
<context>
    <name>CQMKVersion</name>
    <message>
        <source>Missing file </source>
        <translation>Datei nicht gefunden: </translation>
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
    <name>DlgBackupRun</name>
    <message>
        <source>and %1 more (see the product list)</source>
        <translation>und %1 weitere (siehe Produktliste)</translation>
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
        <translation>Quillmark aktualisieren</translation>
    </message>
    <message>
        <source>Product-Dataset Update</source>
        <translation>Navigationsdaten aktualisieren</translation>
    </message>
    <message>
        <source>Product-Dataset Reset</source>
        <translation>Navigationsdaten zurücksetzen</translation>
    </message>
    <message>
        <source>Product-Dataset RemoveBackup</source>
        <translation>Backups löschen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Closes this dialog and stops what it is doing.</source>
        <translation>Schließt diesen Dialog und beendet, was er gerade tut.</translation>
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
        <translation>Produkte zeigen</translation>
    </message>
    <message>
        <source>Hide Product-Select-List</source>
        <translation>Produkte ausblenden</translation>
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
        <source>Downloads: not verified, the catalogue names no public key</source>
        <translation>Downloads: nicht geprüft, der Katalog nennt keinen öffentlichen Schlüssel</translation>
    </message>
    <message>
        <source>Downloads: signed, checked with the key %1</source>
        <translation>Downloads: signiert, geprüft mit dem Schlüssel %1</translation>
    </message>
    <message>
        <source>Download folder: %1</source>
        <translation>Download-Ordner: %1</translation>
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
        <translation>Die Backups dieser Produkte werden gelöscht. Ihre ersetzten Navigationsdaten lassen sich danach nicht mehr zurückholen.</translation>
    </message>
    <message>
        <source>RemoveBackup</source>
        <translation>Backup &amp;löschen</translation>
    </message>
    <message>
        <source>Run RemoveBackup.</source>
        <translation>Backups werden gelöscht…</translation>
    </message>
    <message>
        <source>RemoveBackup ready.</source>
        <translation>Backups gelöscht.</translation>
    </message>
    <message>
        <source>%1: the backup of cycle %2 is deleted</source>
        <translation>%1: Das Backup von Zyklus %2 wird gelöscht</translation>
    </message>
    <message>
        <source>%1: no backup to delete</source>
        <translation>%1: kein Backup zum Löschen</translation>
    </message>
    <message>
        <source>(they share one folder and one backup)</source>
        <translation>(sie teilen sich einen Ordner und ein Backup)</translation>
    </message>
</context>
<context>
    <name>DlgResetDataset</name>
    <message>
        <source>Reset Navdata-Files.</source>
        <translation>Die Navigationsdaten, die diese Produkte vor der letzten Aktualisierung hatten, werden zurückgeholt.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>Run reset.</source>
        <translation>Wird zurückgesetzt…</translation>
    </message>
    <message>
        <source>Reset ready.</source>
        <translation>Zurücksetzen abgeschlossen.</translation>
    </message>
    <message>
        <source>%1: back to cycle %2</source>
        <translation>%1: zurück zu Zyklus %2</translation>
    </message>
    <message>
        <source>%1: no backup, nothing to reset</source>
        <translation>%1: kein Backup, nichts zurückzusetzen</translation>
    </message>
    <message>
        <source>(they share one folder and are reset together)</source>
        <translation>(sie teilen sich einen Ordner und werden gemeinsam zurückgesetzt)</translation>
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
        <translation>Quillmark-Aktualisierungen</translation>
    </message>
    <message>
        <source>AddOn-Dataset Update-Manager</source>
        <translation>Navigationsdaten-Aktualisierungen</translation>
    </message>
    <message>
        <source>auto update</source>
        <translation>Beim Start prüfen</translation>
    </message>
    <message>
        <source>run updater manually</source>
        <translation>Jetzt prüfen</translation>
    </message>
    <message>
        <source>Restore Quillmark default settings</source>
        <translation>Quillmark-Standardeinstellungen wiederherstellen</translation>
    </message>
    <message>
        <source>Restore the default settings and start Quillmark again?</source>
        <translation>Standardeinstellungen wiederherstellen und Quillmark neu starten?</translation>
    </message>
    <message>
        <source>Quillmark forgets the language, the automatic update checks, the simulator folders and each product&apos;s folder and selection. Installed navigation data and backups stay as they are.</source>
        <translation>Quillmark vergisst die Sprache, die automatischen Update-Prüfungen, die Simulatorordner sowie Ordner und Auswahl jedes Produkts. Installierte Navigationsdaten und Backups bleiben erhalten.</translation>
    </message>
    <message>
        <source>Check for a new Quillmark now</source>
        <translation>Jetzt nach einer neuen Quillmark-Version suchen</translation>
    </message>
    <message>
        <source>Check for new navigation data now</source>
        <translation>Jetzt nach neuen Navigationsdaten suchen</translation>
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
        <translation>Datensatzfilter</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message numerus="yes">
        <source>Updated %n product(s) to cycle %1</source>
        <translation>
            <numerusform>%n Produkt auf Zyklus %1 aktualisiert</numerusform>
            <numerusform>%n Produkte auf Zyklus %1 aktualisiert</numerusform>
        </translation>
    </message>
    <message>
        <source>Updated %1 of %2 products to cycle %3; the result in the update dialog says why the others failed</source>
        <translation>%1 von %2 Produkten auf Zyklus %3 aktualisiert; das Ergebnis im Update-Dialog nennt die Gründe für die übrigen</translation>
    </message>
    <message>
        <source>Update failed</source>
        <translation>Aktualisierung fehlgeschlagen</translation>
    </message>
    <message numerus="yes">
        <source>Reset %n product(s) to their backed-up cycle</source>
        <translation>
            <numerusform>%n Produkt auf den gesicherten Zyklus zurückgesetzt</numerusform>
            <numerusform>%n Produkte auf den gesicherten Zyklus zurückgesetzt</numerusform>
        </translation>
    </message>
    <message>
        <source>Reset failed</source>
        <translation>Zurücksetzen fehlgeschlagen</translation>
    </message>
    <message numerus="yes">
        <source>Deleted the backups of %n product(s)</source>
        <translation>
            <numerusform>Backup von %n Produkt gelöscht</numerusform>
            <numerusform>Backups von %n Produkten gelöscht</numerusform>
        </translation>
    </message>
    <message>
        <source>Backup removal failed</source>
        <translation>Löschen des Backups fehlgeschlagen</translation>
    </message>
    <message>
        <source>%1 for %2 of %3 products</source>
        <translation>%1 bei %2 von %3 Produkten</translation>
    </message>
    <message>
        <source>Cycle %1 downloaded, not installed yet</source>
        <translation>Zyklus %1 heruntergeladen, noch nicht installiert</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>Puts the Quillmark window into the Dock or task bar.</source>
        <translation>Legt das Quillmark-Fenster ins Dock oder in die Taskleiste.</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>Maximieren</translation>
    </message>
    <message>
        <source>Makes the Quillmark window fill the screen.</source>
        <translation>Lässt das Quillmark-Fenster den Bildschirm füllen.</translation>
    </message>
    <message>
        <source>Restore size</source>
        <translation>Größe wiederherstellen</translation>
    </message>
    <message>
        <source>Gives the Quillmark window its earlier size again.</source>
        <translation>Gibt dem Quillmark-Fenster seine frühere Größe zurück.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Closes Quillmark.</source>
        <translation>Beendet Quillmark.</translation>
    </message>
    <message>
        <source>%1 still needs a folder.</source>
        <translation>%1 braucht noch einen Ordner.</translation>
    </message>
    <message>
        <source>%1 found in %2; confirm it under %1.</source>
        <translation>%1 gefunden in %2; unter %1 bestätigen.</translation>
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
    <message>
        <source>Shows the products of this category.</source>
        <translation>Zeigt die Produkte dieser Kategorie.</translation>
    </message>
    <message>
        <source>This simulator is not supported on this computer.</source>
        <translation>Dieser Simulator wird auf diesem Computer nicht unterstützt.</translation>
    </message>
</context>
<context>
    <name>VlCatPropsLabel</name>
    <message>
        <source>Open Directory</source>
        <translation>Ordner wählen</translation>
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
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>Chooses the folder of %1.</source>
        <translation>Wählt den Ordner von %1.</translation>
    </message>
    <message>
        <source>Use %1</source>
        <translation>%1 verwenden</translation>
    </message>
    <message>
        <source>No product runs an expired cycle.</source>
        <translation>Kein Produkt läuft mit einem abgelaufenen Zyklus.</translation>
    </message>
    <message numerus="yes">
        <source>%n product(s) run an expired cycle.</source>
        <translation>
            <numerusform>%n Produkt läuft mit einem abgelaufenen Zyklus.</numerusform>
            <numerusform>%n Produkte laufen mit einem abgelaufenen Zyklus.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VlCycleDates</name>
    <message>
        <source>d MMM yyyy</source>
        <comment>date format: day, short month name, year</comment>
        <translation>d. MMM yyyy</translation>
    </message>
    <message>
        <source>d MMM</source>
        <comment>date format: day and short month name</comment>
        <translation>d. MMM</translation>
    </message>
    <message>
        <source>valid %1 – %2</source>
        <translation>gültig %1 – %2</translation>
    </message>
    <message>
        <source>expired today</source>
        <translation>heute abgelaufen</translation>
    </message>
    <message numerus="yes">
        <source>expired %n day(s) ago</source>
        <translation>
            <numerusform>vor %n Tag abgelaufen</numerusform>
            <numerusform>vor %n Tagen abgelaufen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VlProdLabel</name>
    <message>
        <source>Open Directory</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>select</source>
        <translation>Auswählen</translation>
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
        <translation>Die Backup-Dateien werden gelöscht.</translation>
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
    <message>
        <source>V. %1 R. %2</source>
        <translation>Zyklus %1, Revision %2</translation>
    </message>
    <message>
        <source>- installed ( %1 ), backup ( %2 ) -</source>
        <translation>Installiert: %1 · Backup: %2</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Downloads and installs the newest cycle for %1 only.</source>
        <translation>Lädt den neuesten Zyklus nur für %1 herunter und installiert ihn.</translation>
    </message>
    <message>
        <source>Puts back the files that the last update of %1 replaced.</source>
        <translation>Holt die Dateien zurück, die die letzte Aktualisierung von %1 ersetzt hat.</translation>
    </message>
    <message>
        <source>Deletes the backup of %1.</source>
        <translation>Löscht das Backup von %1.</translation>
    </message>
    <message>
        <source>Selects %1 for the next update.</source>
        <translation>Wählt %1 für die nächste Aktualisierung aus.</translation>
    </message>
    <message>
        <source>Chooses the folder of %1.</source>
        <translation>Wählt den Ordner von %1.</translation>
    </message>
</context>
<context>
    <name>VlProgressBar</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
</context>
<context>
    <name>dlgUpdateDatasetVersion</name>
    <message>
        <source>Datasets was found:</source>
        <translation>Datensätze auf diesem Computer:</translation>
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
        <translation>Wird heruntergeladen…</translation>
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
        <translation>Wird installiert…</translation>
    </message>
    <message>
        <source>Install ready.</source>
        <translation>Installation abgeschlossen.</translation>
    </message>
    <message>
        <source>The Product-Select-List ist empty.</source>
        <translation>Kein Produkt ist ausgewählt.</translation>
    </message>
    <message>
        <source>Please select products for update.</source>
        <translation>Haken Sie die zu aktualisierenden Produkte auf ihren Karten an und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>&amp;Installieren</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>&amp;Herunterladen</translation>
    </message>
    <message>
        <source>not found new files</source>
        <translation>das Archiv enthält keine Dateien für dieses Produkt</translation>
    </message>
    <message>
        <source>Overwritten Navdata-Files.</source>
        <translation>Die Installation ersetzt die Navigationsdateien in den Ordnern der ausgewählten Produkte.</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>De&amp;tails</translation>
    </message>
    <message>
        <source>OverwriteAccept</source>
        <translation>Dateien ersetzen</translation>
    </message>
    <message>
        <source>create cycle backup data</source>
        <translation>Von jeder ersetzten Datei ein Backup behalten</translation>
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
        <translation>&amp;Erneut versuchen</translation>
    </message>
    <message>
        <source>%1 of %2 kB</source>
        <translation>%1 von %2 kB</translation>
    </message>
    <message>
        <source>%1 kB</source>
        <translation>%1 kB</translation>
    </message>
    <message>
        <source>Cycle V. %1 R. %2 ( Velmora-Server )</source>
        <translation>Zyklus %1, Revision %2 (auf dem Server)</translation>
    </message>
    <message>
        <source>Cycle V. %1 R. %2 ( Local )</source>
        <translation>Zyklus %1, Revision %2 (heruntergeladen)</translation>
    </message>
    <message>
        <source>Cycle to install</source>
        <translation>Zu installierender Zyklus</translation>
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
        <translation>Wird heruntergeladen…</translation>
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
        <translation>Wird entpackt…</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>&amp;Herunterladen</translation>
    </message>
    <message>
        <source>Run update now</source>
        <translation>Jetzt &amp;aktualisieren</translation>
    </message>
    <message>
        <source>Installation-File not found.</source>
        <translation>Die Installationsdatei wurde nicht gefunden. Laden Sie die neue Version erneut herunter.</translation>
    </message>
    <message>
        <source>Checking for a new version.</source>
        <translation>Suche nach einer neuen Version.</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>&amp;Erneut versuchen</translation>
    </message>
</context>
<context>
    <name>wdgBackupLocal</name>
    <message>
        <source>Backup</source>
        <translation>Zyklusarchiv</translation>
    </message>
    <message>
        <source>Create backup info.</source>
        <translation>Speichert die heruntergeladenen Zyklusdaten in einem Archiv oder lädt ein solches Archiv zurück.</translation>
    </message>
    <message>
        <source>Create backup</source>
        <translation>Archiv &amp;speichern</translation>
    </message>
    <message>
        <source>Load backup</source>
        <translation>Archiv &amp;laden</translation>
    </message>
    <message>
        <source>backup empty</source>
        <translation>Es gibt keine heruntergeladenen Zyklusdaten zum Speichern.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Run create backup.</source>
        <translation>Zyklusarchiv wird gespeichert…</translation>
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
        <translation>Zyklusarchiv wird geladen…</translation>
    </message>
    <message>
        <source>successful</source>
        <translation>erfolgreich</translation>
    </message>
</context>
</TS>
