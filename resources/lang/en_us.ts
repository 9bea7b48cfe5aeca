<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>CDSVersion</name>
    <message>
        <source>Download failed</source>
        <translation>Download failed</translation>
    </message>
    <message>
        <source>Failed download file:</source>
        <translation>Failed download file:</translation>
    </message>
    <message>
        <source>Download success</source>
        <translation>Downloaded</translation>
    </message>
    <message>
        <source>Download success file:</source>
        <translation>Download success file:</translation>
    </message>
    <message>
        <source>Download failed!</source>
        <translation>Download failed.</translation>
    </message>
    <message>
        <source>Dataset: </source>
        <translation>Dataset: </translation>
    </message>
    <message>
        <source>Install failed</source>
        <translation>Install failed</translation>
    </message>
    <message>
        <source>File</source>
        <translation>File</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>not found</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Path</translation>
    </message>
    <message>
        <source>Install success</source>
        <translation>Installed</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>for</source>
        <translation>for</translation>
    </message>
    <message>
        <source>Reset failed</source>
        <translation>Reset failed</translation>
    </message>
    <message>
        <source>Remove backup failed</source>
        <translation>Deleting the backup failed</translation>
    </message>
    <message>
        <source>Reset success</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>Remove backup success</source>
        <translation>Backup deleted</translation>
    </message>
    <message>
        <source>not removed, outside the product:</source>
        <translation>not removed, outside the product:</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>A run record that cannot be read was left alone:</source>
        <translation>A run record that cannot be read was left alone:</translation>
    </message>
    <message>
        <source>The interrupted install of %1 was completed.</source>
        <translation>The interrupted install of %1 was completed.</translation>
    </message>
    <message>
        <source>The interrupted install of %1 was undone; its files are as they were before.</source>
        <translation>The interrupted install of %1 was undone; its files are as they were before.</translation>
    </message>
    <message>
        <source>The interrupted install of %1 could not be undone completely; see the log.</source>
        <translation>The interrupted install of %1 could not be undone completely; see the log.</translation>
    </message>
    <message>
        <source>The interrupted install of %1 made no backups and cannot be undone; install it again.</source>
        <translation>The interrupted install of %1 made no backups and cannot be undone; install it again.</translation>
    </message>
    <message>
        <source>The interrupted reset of %1 waits for the reset in progress.</source>
        <translation>The interrupted reset of %1 waits for the reset in progress.</translation>
    </message>
    <message>
        <source>The interrupted reset of %1 was completed.</source>
        <translation>The interrupted reset of %1 was completed.</translation>
    </message>
    <message>
        <source>The interrupted reset of %1 could not be completed; see the log.</source>
        <translation>The interrupted reset of %1 could not be completed; see the log.</translation>
    </message>
    <message>
        <source>(mirror %1)</source>
        <translation>(mirror %1)</translation>
    </message>
    <message>
        <source>%1 not taken from mirror %2:</source>
        <translation>%1 not taken from mirror %2:</translation>
    </message>
</context>
<context>
    <name>CDataModel</name>
    <message>
        <source>Couldn&apos;t open bin/base_ini.xml</source>
        <translation>The catalogue bin/base_ini.xml could not be opened. Reinstall Quillmark.</translation>
    </message>
    <message>
        <source>Error! Init base</source>
        <translation>Catalogue not readable</translation>
    </message>
    <message>
        <source>Couldn&apos;t open prop_ini.xml</source>
        <translation>The settings file prop_ini.xml could not be written. Make its folder writable.</translation>
    </message>
    <message>
        <source>corrupted file: prop_ini.xml </source>
        <translation>The settings file prop_ini.xml is damaged: </translation>
    </message>
    <message>
        <source>Couldn&apos;t delete prop_ini.xml</source>
        <translation>The settings file prop_ini.xml could not be deleted. Make its folder writable.</translation>
    </message>
    <message>
        <source>The last run of Quillmark was cut off during an update or a reset:</source>
        <translation>The last run of Quillmark was cut off during an update or a reset:</translation>
    </message>
    <message>
        <source>The Product-Select-List ist empty.</source>
        <translation>No product is selected.</translation>
    </message>
    <message>
        <source>Please select products for reset.</source>
        <translation>Tick the products to reset on their cards, then try again.</translation>
    </message>
    <message>
        <source>Please select products for remove backup.</source>
        <translation>Tick the products whose backups you want to delete, then try again.</translation>
    </message>
</context>
<context>
    <name>CFailureReason</name>
    <message>
        <source>No answer from %1: the server name was not found. Check your internet connection and the server address.</source>
        <translation>No answer from %1: the server name was not found. Check your internet connection and the server address.</translation>
    </message>
    <message>
        <source>%1 refused the connection: the server is down. Try again later.</source>
        <translation>%1 refused the connection: the server is down. Try again later.</translation>
    </message>
    <message>
        <source>%1 did not answer in time. Check your internet connection, or try again later.</source>
        <translation>%1 did not answer in time. Check your internet connection, or try again later.</translation>
    </message>
    <message>
        <source>No secure connection to %1 could be made. Check the computer&apos;s date and time, or try another network.</source>
        <translation>No secure connection to %1 could be made. Check the computer&apos;s date and time, or try another network.</translation>
    </message>
    <message>
        <source>No answer from %1: the server is down or you are offline. Check your internet connection, or try again later.</source>
        <translation>No answer from %1: the server is down or you are offline. Check your internet connection, or try again later.</translation>
    </message>
    <message>
        <source>The connection to %1 broke off during the download. Try again.</source>
        <translation>The connection to %1 broke off during the download. Try again.</translation>
    </message>
    <message>
        <source>%1 refused the credentials (HTTP %2). Check that your subscription is active, or contact support.</source>
        <translation>%1 refused the credentials (HTTP %2). Check that your subscription is active, or contact support.</translation>
    </message>
    <message>
        <source>%1 does not have the file %2 (HTTP 404). It may not be published yet: try again later.</source>
        <translation>%1 does not have the file %2 (HTTP 404). It may not be published yet: try again later.</translation>
    </message>
    <message>
        <source>%1 had a server error (HTTP %2). Try again later.</source>
        <translation>%1 had a server error (HTTP %2). Try again later.</translation>
    </message>
    <message>
        <source>%1 answered with an error (HTTP %2). Try again later.</source>
        <translation>%1 answered with an error (HTTP %2). Try again later.</translation>
    </message>
    <message>
        <source>The download could not be saved (%1). Free some disk space, or make the folder writable.</source>
        <translation>The download could not be saved (%1). Free some disk space, or make the folder writable.</translation>
    </message>
    <message>
        <source>%1 has no signature for %2, so the file cannot be trusted and was not used. Try again later, or tell the publisher.</source>
        <translation>%1 has no signature for %2, so the file cannot be trusted and was not used. Try again later, or tell the publisher.</translation>
    </message>
    <message>
        <source>The signature of %2 from %1 did not match: the file was damaged or altered on its way and was not used. Try again later, or tell the publisher.</source>
        <translation>The signature of %2 from %1 did not match: the file was damaged or altered on its way and was not used. Try again later, or tell the publisher.</translation>
    </message>
    <message>
        <source>The signature of %2 from %1 did not match: it was made with a key this program does not trust, so the file was not used. Update Quillmark, or tell the publisher.</source>
        <translation>The signature of %2 from %1 did not match: it was made with a key this program does not trust, so the file was not used. Update Quillmark, or tell the publisher.</translation>
    </message>
    <message>
        <source>The signature of %2 from %1 did not match: it was made for %3, so the file was not used. Try again later, or tell the publisher.</source>
        <translation>The signature of %2 from %1 did not match: it was made for %3, so the file was not used. Try again later, or tell the publisher.</translation>
    </message>
    <message>
        <source>The version list from %1 was signed on %2, before the one already accepted (%3): an old list is being replayed, or the server is out of date. It was not used. Try again later.</source>
        <translation>The version list from %1 was signed on %2, before the one already accepted (%3): an old list is being replayed, or the server is out of date. It was not used. Try again later.</translation>
    </message>
</context>
<context>
    <name>CQMKVersion</name>
    <message>
        <source>Missing file </source>
        <translation>File not found: </translation>
    </message>
</context>
<context>
    <name>CvlFilterCmb</name>
    <message>
        <source>All</source>
        <translation>All</translation>
    </message>
</context>
<context>
    <name>CvlHelpButton</name>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
</context>
<context>
    <name>CvlRemoveBackupButton</name>
    <message>
        <source>RemoveBackup</source>
        <translation>Delete backup</translation>
    </message>
</context>
<context>
    <name>CvlResetButton</name>
    <message>
        <source>Reset</source>
        <translation>Reset</translation>
    </message>
</context>
<context>
    <name>CvlSettingsButton</name>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
</context>
<context>
    <name>CvlUpdateButton</name>
    <message>
        <source>Update</source>
        <translation>Update</translation>
    </message>
</context>
<context>
    <name>DlgBackupRun</name>
    <message>
        <source>and %1 more (see the product list)</source>
        <translation>and %1 more (see the product list)</translation>
    </message>
</context>
<context>
    <name>DlgBase</name>
    <message>
        <source>About Quillmark</source>
        <translation>About Quillmark</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Quillmark Update</source>
        <translation>Quillmark Update</translation>
    </message>
    <message>
        <source>Product-Dataset Update</source>
        <translation>Update navigation data</translation>
    </message>
    <message>
        <source>Product-Dataset Reset</source>
        <translation>Reset navigation data</translation>
    </message>
    <message>
        <source>Product-Dataset RemoveBackup</source>
        <translation>Delete backups</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Closes this dialog and stops what it is doing.</source>
        <translation>Closes this dialog and stops what it is doing.</translation>
    </message>
</context>
<context>
    <name>DlgDatasetRun</name>
    <message>
        <source>Products:</source>
        <translation>Products:</translation>
    </message>
    <message>
        <source>Show Product-Select-List</source>
        <translation>Show products</translation>
    </message>
    <message>
        <source>Hide Product-Select-List</source>
        <translation>Hide products</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>Attention:</source>
        <translation>Attention:</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
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
        <translation>Quillmark keeps the navigation data (AIRAC cycles) of your flight-simulator add-ons up to date: it downloads the newest cycle, installs it with a backup of every replaced file, and can restore or remove those backups.</translation>
    </message>
    <message>
        <source>Server: %1</source>
        <translation>Server: %1</translation>
    </message>
    <message>
        <source>Settings: %1</source>
        <translation>Settings: %1</translation>
    </message>
    <message>
        <source>Logs: %1</source>
        <translation>Logs: %1</translation>
    </message>
    <message>
        <source>Open manual</source>
        <translation>Open manual</translation>
    </message>
    <message>
        <source>The manual %1 was not found.</source>
        <translation>The manual %1 was not found.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>No program to show %1 was found.</source>
        <translation>No program to show %1 was found.</translation>
    </message>
    <message>
        <source>Downloads: not verified, the catalogue names no public key</source>
        <translation>Downloads: not verified, the catalogue names no public key</translation>
    </message>
    <message>
        <source>Downloads: signed, checked with the key %1</source>
        <translation>Downloads: signed, checked with the key %1</translation>
    </message>
    <message>
        <source>Download folder: %1</source>
        <translation>Download folder: %1</translation>
    </message>
    <message>
        <source>Open log folder</source>
        <translation>Open log folder</translation>
    </message>
    <message>
        <source>Copy diagnostics</source>
        <translation>Copy diagnostics</translation>
    </message>
    <message>
        <source>Diagnostics copied to the clipboard.</source>
        <translation>Diagnostics copied to the clipboard.</translation>
    </message>
</context>
<context>
    <name>DlgRemoveBackup</name>
    <message>
        <source>RemoveBackup Navdata-Files.</source>
        <translation>The backups of these products are deleted. Their replaced navigation data can then no longer be restored.</translation>
    </message>
    <message>
        <source>RemoveBackup</source>
        <translation>&amp;Delete backup</translation>
    </message>
    <message>
        <source>Run RemoveBackup.</source>
        <translation>Deleting the backups…</translation>
    </message>
    <message>
        <source>RemoveBackup ready.</source>
        <translation>Backups deleted.</translation>
    </message>
    <message>
        <source>%1: the backup of cycle %2 is deleted</source>
        <translation>%1: the backup of cycle %2 is deleted</translation>
    </message>
    <message>
        <source>%1: no backup to delete</source>
        <translation>%1: no backup to delete</translation>
    </message>
    <message>
        <source>(they share one folder and one backup)</source>
        <translation>(they share one folder and one backup)</translation>
    </message>
</context>
<context>
    <name>DlgResetDataset</name>
    <message>
        <source>Reset Navdata-Files.</source>
        <translation>The navigation data these products had before the last update is put back.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>&amp;Reset</translation>
    </message>
    <message>
        <source>Run reset.</source>
        <translation>Resetting…</translation>
    </message>
    <message>
        <source>Reset ready.</source>
        <translation>Reset complete.</translation>
    </message>
    <message>
        <source>%1: back to cycle %2</source>
        <translation>%1: back to cycle %2</translation>
    </message>
    <message>
        <source>%1: no backup, nothing to reset</source>
        <translation>%1: no backup, nothing to reset</translation>
    </message>
    <message>
        <source>(they share one folder and are reset together)</source>
        <translation>(they share one folder and are reset together)</translation>
    </message>
</context>
<context>
    <name>DlgVLSettings</name>
    <message>
        <source>Language:</source>
        <translation>Language:</translation>
    </message>
    <message>
        <source>Quillmark Update-Manager</source>
        <translation>Quillmark updates</translation>
    </message>
    <message>
        <source>AddOn-Dataset Update-Manager</source>
        <translation>Navigation data updates</translation>
    </message>
    <message>
        <source>auto update</source>
        <translation>Check at start</translation>
    </message>
    <message>
        <source>run updater manually</source>
        <translation>Check now</translation>
    </message>
    <message>
        <source>Restore Quillmark default settings</source>
        <translation>&amp;Restore default settings</translation>
    </message>
    <message>
        <source>Restore the default settings and start Quillmark again?</source>
        <translation>Restore the default settings and start Quillmark again?</translation>
    </message>
    <message>
        <source>Quillmark forgets the language, the automatic update checks, the simulator folders and each product&apos;s folder and selection. Installed navigation data and backups stay as they are.</source>
        <translation>Quillmark forgets the language, the automatic update checks, the simulator folders and each product&apos;s folder and selection. Installed navigation data and backups stay as they are.</translation>
    </message>
    <message>
        <source>Check for a new Quillmark now</source>
        <translation>Check for a new Quillmark now</translation>
    </message>
    <message>
        <source>Check for new navigation data now</source>
        <translation>Check for new navigation data now</translation>
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
        <translation>Path</translation>
    </message>
    <message>
        <source>Dataset-Filter</source>
        <translation>Dataset filter</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Ready</translation>
    </message>
    <message numerus="yes">
        <source>Updated %n product(s) to cycle %1</source>
        <translation>
            <numerusform>Updated %n product to cycle %1</numerusform>
            <numerusform>Updated %n products to cycle %1</numerusform>
        </translation>
    </message>
    <message>
        <source>Updated %1 of %2 products to cycle %3; the result in the update dialog says why the others failed</source>
        <translation>Updated %1 of %2 products to cycle %3; the result in the update dialog says why the others failed</translation>
    </message>
    <message>
        <source>Update failed</source>
        <translation>Update failed</translation>
    </message>
    <message numerus="yes">
        <source>Reset %n product(s) to their backed-up cycle</source>
        <translation>
            <numerusform>Reset %n product to its backed-up cycle</numerusform>
            <numerusform>Reset %n products to their backed-up cycle</numerusform>
        </translation>
    </message>
    <message>
        <source>Reset failed</source>
        <translation>Reset failed</translation>
    </message>
    <message numerus="yes">
        <source>Deleted the backups of %n product(s)</source>
        <translation>
            <numerusform>Deleted the backup of %n product</numerusform>
            <numerusform>Deleted the backups of %n products</numerusform>
        </translation>
    </message>
    <message>
        <source>Backup removal failed</source>
        <translation>Backup removal failed</translation>
    </message>
    <message>
        <source>%1 for %2 of %3 products</source>
        <translation>%1 for %2 of %3 products</translation>
    </message>
    <message>
        <source>Cycle %1 downloaded, not installed yet</source>
        <translation>Cycle %1 downloaded, not installed yet</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Minimize</translation>
    </message>
    <message>
        <source>Puts the Quillmark window into the Dock or task bar.</source>
        <translation>Puts the Quillmark window into the Dock or task bar.</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>Maximize</translation>
    </message>
    <message>
        <source>Makes the Quillmark window fill the screen.</source>
        <translation>Makes the Quillmark window fill the screen.</translation>
    </message>
    <message>
        <source>Restore size</source>
        <translation>Restore size</translation>
    </message>
    <message>
        <source>Gives the Quillmark window its earlier size again.</source>
        <translation>Gives the Quillmark window its earlier size again.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Closes Quillmark.</source>
        <translation>Closes Quillmark.</translation>
    </message>
    <message>
        <source>%1 still needs a folder.</source>
        <translation>%1 still needs a folder.</translation>
    </message>
    <message>
        <source>%1 found in %2; confirm it under %1.</source>
        <translation>%1 found in %2; confirm it under %1.</translation>
    </message>
</context>
<context>
    <name>VlCatLabel</name>
    <message>
        <source>All</source>
        <translation>All</translation>
    </message>
    <message>
        <source>Selected</source>
        <translation>Selected</translation>
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
        <translation>Shows the products of this category.</translation>
    </message>
    <message>
        <source>This simulator is not supported on this computer.</source>
        <translation>This simulator is not supported on this computer.</translation>
    </message>
</context>
<context>
    <name>VlCatPropsLabel</name>
    <message>
        <source>Open Directory</source>
        <translation>Choose folder</translation>
    </message>
    <message>
        <source>Category-Properties</source>
        <translation>Category</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Folder:</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>Chooses the folder of %1.</source>
        <translation>Chooses the folder of %1.</translation>
    </message>
    <message>
        <source>Use %1</source>
        <translation>Use %1</translation>
    </message>
    <message>
        <source>No product runs an expired cycle.</source>
        <translation>No product runs an expired cycle.</translation>
    </message>
    <message numerus="yes">
        <source>%n product(s) run an expired cycle.</source>
        <translation>
            <numerusform>%n product runs an expired cycle.</numerusform>
            <numerusform>%n products run an expired cycle.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VlCycleDates</name>
    <message>
        <source>d MMM yyyy</source>
        <comment>date format: day, short month name, year</comment>
        <translation>d MMM yyyy</translation>
    </message>
    <message>
        <source>d MMM</source>
        <comment>date format: day and short month name</comment>
        <translation>d MMM</translation>
    </message>
    <message>
        <source>valid %1 – %2</source>
        <translation>valid %1 – %2</translation>
    </message>
    <message>
        <source>expired today</source>
        <translation>expired today</translation>
    </message>
    <message numerus="yes">
        <source>expired %n day(s) ago</source>
        <translation>
            <numerusform>expired %n day ago</numerusform>
            <numerusform>expired %n days ago</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VlProdLabel</name>
    <message>
        <source>Open Directory</source>
        <translation>Choose folder</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>none</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Folder:</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>select</source>
        <translation>Select</translation>
    </message>
    <message>
        <source>Dataset:</source>
        <translation>Dataset:</translation>
    </message>
    <message>
        <source>Cycle:</source>
        <translation>Cycle:</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Update</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>remove backup files</source>
        <translation>Delete backup</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Commands</translation>
    </message>
    <message>
        <source>Installing: the newest cycle is being downloaded or installed.</source>
        <translation>Installing: the newest cycle is being downloaded or installed.</translation>
    </message>
    <message>
        <source>Resetting: the backed-up files are being restored.</source>
        <translation>Resetting: the backed-up files are being restored.</translation>
    </message>
    <message>
        <source>Removing the backup files.</source>
        <translation>Removing the backup files.</translation>
    </message>
    <message>
        <source>Not checked: the newest cycle is not known yet (the version server was not reached), so the installed cycle cannot be compared with it.</source>
        <translation>Not checked: the newest cycle is not known yet (the version server was not reached), so the installed cycle cannot be compared with it.</translation>
    </message>
    <message>
        <source>Not installed: this product does not hold the newest cycle.</source>
        <translation>Not installed: this product does not hold the newest cycle.</translation>
    </message>
    <message>
        <source>Installed: this product holds the newest cycle.</source>
        <translation>Installed: this product holds the newest cycle.</translation>
    </message>
    <message>
        <source>Failed: the last run did not succeed for this product.</source>
        <translation>Failed: the last run did not succeed for this product.</translation>
    </message>
    <message>
        <source>Failed: %1</source>
        <translation>Failed: %1</translation>
    </message>
    <message>
        <source>Update due: the installed cycle differs from the newest one, or the last run was stopped.</source>
        <translation>Update due: the installed cycle differs from the newest one, or the last run was stopped.</translation>
    </message>
    <message>
        <source>Update available.</source>
        <translation>Update available.</translation>
    </message>
    <message>
        <source>V. %1 R. %2</source>
        <translation>cycle %1, revision %2</translation>
    </message>
    <message>
        <source>- installed ( %1 ), backup ( %2 ) -</source>
        <translation>Installed: %1 · Backup: %2</translation>
    </message>
    <message>
        <source>State</source>
        <translation>State</translation>
    </message>
    <message>
        <source>Downloads and installs the newest cycle for %1 only.</source>
        <translation>Downloads and installs the newest cycle for %1 only.</translation>
    </message>
    <message>
        <source>Puts back the files that the last update of %1 replaced.</source>
        <translation>Puts back the files that the last update of %1 replaced.</translation>
    </message>
    <message>
        <source>Deletes the backup of %1.</source>
        <translation>Deletes the backup of %1.</translation>
    </message>
    <message>
        <source>Selects %1 for the next update.</source>
        <translation>Selects %1 for the next update.</translation>
    </message>
    <message>
        <source>Chooses the folder of %1.</source>
        <translation>Chooses the folder of %1.</translation>
    </message>
</context>
<context>
    <name>VlProgressBar</name>
    <message>
        <source>Progress</source>
        <translation>Progress</translation>
    </message>
</context>
<context>
    <name>dlgUpdateDatasetVersion</name>
    <message>
        <source>Datasets was found:</source>
        <translation>Datasets on this computer:</translation>
    </message>
    <message>
        <source>ready for download.</source>
        <translation>ready for download.</translation>
    </message>
    <message>
        <source>Failed to connect to Velmora-Server.</source>
        <translation>Failed to connect to Velmora-Server.</translation>
    </message>
    <message>
        <source>There are no new updates available.</source>
        <translation>There are no new updates available.</translation>
    </message>
    <message>
        <source>Run download.</source>
        <translation>Downloading…</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Update</translation>
    </message>
    <message>
        <source>downloaded.</source>
        <translation>downloaded.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Download failed.</source>
        <translation>Download failed.</translation>
    </message>
    <message>
        <source>Run install.</source>
        <translation>Installing…</translation>
    </message>
    <message>
        <source>Install ready.</source>
        <translation>Installation complete.</translation>
    </message>
    <message>
        <source>The Product-Select-List ist empty.</source>
        <translation>No product is selected.</translation>
    </message>
    <message>
        <source>Please select products for update.</source>
        <translation>Tick the products to update on their cards, then try again.</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>&amp;Install</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>&amp;Download</translation>
    </message>
    <message>
        <source>not found new files</source>
        <translation>the archive holds no files for this product</translation>
    </message>
    <message>
        <source>Overwritten Navdata-Files.</source>
        <translation>Installing replaces the navigation data files in the folders of the selected products.</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>De&amp;tails</translation>
    </message>
    <message>
        <source>OverwriteAccept</source>
        <translation>Replace the files</translation>
    </message>
    <message>
        <source>create cycle backup data</source>
        <translation>Keep a backup of every replaced file</translation>
    </message>
    <message>
        <source>No cycle from the Velmora-Server</source>
        <translation>No cycle from the Velmora-Server</translation>
    </message>
    <message>
        <source>Cycle %1 is downloaded and ready to install.</source>
        <translation>Cycle %1 is downloaded and ready to install.</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1 (%2 of %3)</translation>
    </message>
    <message>
        <source>%1 of %2 MB</source>
        <translation>%1 of %2 MB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>Cycle %1 is downloaded but not installed yet.</source>
        <translation>Cycle %1 is downloaded but not installed yet.</translation>
    </message>
    <message>
        <source>Leave it for later? You can install it from the Update button at any time.</source>
        <translation>Leave it for later? You can install it from the Update button at any time.</translation>
    </message>
    <message>
        <source>Leave for later</source>
        <translation>Leave for later</translation>
    </message>
    <message>
        <source>Installing %1 (%2 of %3)</source>
        <translation>Installing %1 (%2 of %3)</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>&amp;Retry</translation>
    </message>
    <message>
        <source>%1 of %2 kB</source>
        <translation>%1 of %2 kB</translation>
    </message>
    <message>
        <source>%1 kB</source>
        <translation>%1 kB</translation>
    </message>
    <message>
        <source>Cycle V. %1 R. %2 ( Velmora-Server )</source>
        <translation>Cycle %1, revision %2 (on the server)</translation>
    </message>
    <message>
        <source>Cycle V. %1 R. %2 ( Local )</source>
        <translation>Cycle %1, revision %2 (downloaded)</translation>
    </message>
    <message>
        <source>Cycle to install</source>
        <translation>Cycle to install</translation>
    </message>
</context>
<context>
    <name>dlgUpdateQMKVersion</name>
    <message>
        <source>Failed to connect to Velmora-Server.</source>
        <translation>Failed to connect to Velmora-Server.</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>ready for download.</source>
        <translation>ready for download.</translation>
    </message>
    <message>
        <source>There are no new updates available.</source>
        <translation>There are no new updates available.</translation>
    </message>
    <message>
        <source>No version information was found on the Velmora-Server.</source>
        <translation>No version information was found on the Velmora-Server.</translation>
    </message>
    <message>
        <source>Run download.</source>
        <translation>Downloading…</translation>
    </message>
    <message>
        <source>downloaded.</source>
        <translation>downloaded.</translation>
    </message>
    <message>
        <source>Download failed.</source>
        <translation>Download failed.</translation>
    </message>
    <message>
        <source>Run unzip.</source>
        <translation>Unpacking…</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>&amp;Download</translation>
    </message>
    <message>
        <source>Run update now</source>
        <translation>&amp;Update now</translation>
    </message>
    <message>
        <source>Installation-File not found.</source>
        <translation>The installation file was not found. Download the new version again.</translation>
    </message>
    <message>
        <source>Checking for a new version.</source>
        <translation>Checking for a new version.</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>&amp;Retry</translation>
    </message>
</context>
<context>
    <name>wdgBackupLocal</name>
    <message>
        <source>Backup</source>
        <translation>Cycle archive</translation>
    </message>
    <message>
        <source>Create backup info.</source>
        <translation>Saves the downloaded cycle data into one archive, or loads such an archive back.</translation>
    </message>
    <message>
        <source>Create backup</source>
        <translation>&amp;Save archive</translation>
    </message>
    <message>
        <source>Load backup</source>
        <translation>&amp;Load archive</translation>
    </message>
    <message>
        <source>backup empty</source>
        <translation>There is no downloaded cycle data to save.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Run create backup.</source>
        <translation>Saving the cycle archive…</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>failed</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>not found</translation>
    </message>
    <message>
        <source>Run load backup.</source>
        <translation>Loading the cycle archive…</translation>
    </message>
    <message>
        <source>successful</source>
        <translation>successful</translation>
    </message>
</context>
</TS>
