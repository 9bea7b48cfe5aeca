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
        <translation>Download success</translation>
    </message>
    <message>
        <source>Download success file:</source>
        <translation>Download success file:</translation>
    </message>
    <message>
        <source>Download failed!</source>
        <translation>Download failed!</translation>
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
        <translation>Install success</translation>
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
        <translation>Remove backup failed</translation>
    </message>
    <message>
        <source>Reset success</source>
        <translation>Reset success</translation>
    </message>
    <message>
        <source>Remove backup success</source>
        <translation>Remove backup success</translation>
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
</context>
<context>
    <name>CDataModel</name>
    <message>
        <source>Couldn&apos;t open bin/base_ini.xml</source>
        <translation>Couldn&apos;t open bin/base_ini.xml</translation>
    </message>
    <message>
        <source>Error! Init base</source>
        <translation>Error! Init base</translation>
    </message>
    <message>
        <source>Couldn&apos;t open prop_ini.xml</source>
        <translation>Couldn&apos;t open prop_ini.xml</translation>
    </message>
    <message>
        <source>corrupted file: prop_ini.xml </source>
        <translation>corrupted file: prop_ini.xml </translation>
    </message>
    <message>
        <source>Couldn&apos;t delete prop_ini.xml</source>
        <translation>Couldn&apos;t delete prop_ini.xml</translation>
    </message>
    <message>
        <source>The last run of Quillmark was cut off during an update or a reset:</source>
        <translation>The last run of Quillmark was cut off during an update or a reset:</translation>
    </message>
    <message>
        <source>The Product-Select-List ist empty.</source>
        <translation>The Product-Select-List ist empty.</translation>
    </message>
    <message>
        <source>Please select products for reset.</source>
        <translation>Please select products for reset.</translation>
    </message>
    <message>
        <source>Please select products for remove backup.</source>
        <translation>Please select products for remove backup.</translation>
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
</context>
<context>
    <name>CQMKVersion</name>
    <message>
        <source>Missing file </source>
        <translation>Missing file </translation>
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
        <translation>RemoveBackup</translation>
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
    <name>DlgBase</name>
    <message>
        <source>About Quillmark</source>
        <translation>About Quillmark</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished">Settings</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>Ok</translation>
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
        <translation>Product-Dataset Update</translation>
    </message>
    <message>
        <source>Product-Dataset Reset</source>
        <translation>Product-Dataset Reset</translation>
    </message>
    <message>
        <source>Product-Dataset RemoveBackup</source>
        <translation>Product-Dataset RemoveBackup</translation>
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
        <translation>Show Product-Select-List</translation>
    </message>
    <message>
        <source>Hide Product-Select-List</source>
        <translation>Hide Product-Select-List</translation>
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
        <translation type="unfinished">Error</translation>
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
        <translation type="unfinished">Error</translation>
    </message>
    <message>
        <source>No program to show %1 was found.</source>
        <translation>No program to show %1 was found.</translation>
    </message>
    <message>
        <source>Downloads: %1</source>
        <translation>Downloads: %1</translation>
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
        <translation>RemoveBackup Navdata-Files.</translation>
    </message>
    <message>
        <source>RemoveBackup</source>
        <translation type="unfinished">RemoveBackup</translation>
    </message>
    <message>
        <source>Run RemoveBackup.</source>
        <translation>Run RemoveBackup.</translation>
    </message>
    <message>
        <source>RemoveBackup ready.</source>
        <translation>RemoveBackup ready.</translation>
    </message>
</context>
<context>
    <name>DlgResetDataset</name>
    <message>
        <source>Reset Navdata-Files.</source>
        <translation>Reset Navdata-Files.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation type="unfinished">Reset</translation>
    </message>
    <message>
        <source>Run reset.</source>
        <translation>Run reset.</translation>
    </message>
    <message>
        <source>Reset ready.</source>
        <translation>Reset ready.</translation>
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
        <translation>Quillmark Update-Manager</translation>
    </message>
    <message>
        <source>AddOn-Dataset Update-Manager</source>
        <translation>AddOn-Dataset Update-Manager</translation>
    </message>
    <message>
        <source>auto update</source>
        <translation>auto update</translation>
    </message>
    <message>
        <source>run updater manually</source>
        <translation>run updater manually</translation>
    </message>
    <message>
        <source>Restore Quillmark default settings</source>
        <translation>Restore Quillmark default settings</translation>
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
        <translation>Dataset-Filter</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Ready</translation>
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
</context>
<context>
    <name>VlCatPropsLabel</name>
    <message>
        <source>Open Directory</source>
        <translation>Open Directory</translation>
    </message>
    <message>
        <source>Category-Properties</source>
        <translation>Category-Properties</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Path:</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Change</translation>
    </message>
</context>
<context>
    <name>VlProdLabel</name>
    <message>
        <source>Open Directory</source>
        <translation>Open Directory</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>not found</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>installed</source>
        <translation>installed</translation>
    </message>
    <message>
        <source>backup</source>
        <translation>backup</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Path:</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>select</source>
        <translation>select</translation>
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
        <translation>remove backup files</translation>
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
</context>
<context>
    <name>dlgUpdateDatasetVersion</name>
    <message>
        <source>Datasets was found:</source>
        <translation>Datasets was found:</translation>
    </message>
    <message>
        <source>ready for download.</source>
        <translation type="unfinished">ready for download.</translation>
    </message>
    <message>
        <source>Failed to connect to Velmora-Server.</source>
        <translation type="unfinished">Failed to connect to Velmora-Server.</translation>
    </message>
    <message>
        <source>There are no new updates available.</source>
        <translation type="unfinished">There are no new updates available.</translation>
    </message>
    <message>
        <source>Run download.</source>
        <translation type="unfinished">Run download.</translation>
    </message>
    <message>
        <source>Update</source>
        <translation type="unfinished">Update</translation>
    </message>
    <message>
        <source>downloaded.</source>
        <translation type="unfinished">downloaded.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished">Error</translation>
    </message>
    <message>
        <source>Download failed.</source>
        <translation type="unfinished">Download failed.</translation>
    </message>
    <message>
        <source>Run install.</source>
        <translation>Run install.</translation>
    </message>
    <message>
        <source>Install ready.</source>
        <translation>Install ready.</translation>
    </message>
    <message>
        <source>The Product-Select-List ist empty.</source>
        <translation>The Product-Select-List ist empty.</translation>
    </message>
    <message>
        <source>Please select products for update.</source>
        <translation>Please select products for update.</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Install</translation>
    </message>
    <message>
        <source>Download</source>
        <translation type="unfinished">Download</translation>
    </message>
    <message>
        <source>not found new files</source>
        <translation>not found new files</translation>
    </message>
    <message>
        <source>Overwritten Navdata-Files.</source>
        <translation>Overwritten Navdata-Files.</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>OverwriteAccept</source>
        <translation>OverwriteAccept</translation>
    </message>
    <message>
        <source>create cycle backup data</source>
        <translation>create cycle backup data</translation>
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
        <translation>Retry</translation>
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
        <translation>Run download.</translation>
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
        <translation>Run unzip.</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Run update now</source>
        <translation>Run update now</translation>
    </message>
    <message>
        <source>Installation-File not found.</source>
        <translation>Installation-File not found.</translation>
    </message>
    <message>
        <source>Checking for a new version.</source>
        <translation>Checking for a new version.</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Retry</translation>
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
        <translation>Create backup info.</translation>
    </message>
    <message>
        <source>Create backup</source>
        <translation>Create backup</translation>
    </message>
    <message>
        <source>Load backup</source>
        <translation>Load backup</translation>
    </message>
    <message>
        <source>backup empty</source>
        <translation>backup empty</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Run create backup.</source>
        <translation>Run create backup.</translation>
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
        <translation>Run load backup.</translation>
    </message>
    <message>
        <source>successful</source>
        <translation>successful</translation>
    </message>
</context>
</TS>
