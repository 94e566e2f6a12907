<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="Corvane Brailler">
        <source>Corvane Brailler</source>
        <translation>Corvane Brailler</translation>
    </message>
    <message id="Looking for devices. Switch the Corvane on and keep it near.">
        <source>Looking for devices. Switch the Corvane on and keep it near.</source>
        <translation>Looking for devices. Switch the Corvane on and keep it near.</translation>
    </message>
    <message id="Close">
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message id="Open at the side">
        <source>Open at the side</source>
        <translation>Open at the side</translation>
    </message>
    <message id="Choose a user to see the documents.">
        <source>Choose a user to see the documents.</source>
        <translation>Choose a user to see the documents.</translation>
    </message>
    <message id="The chat and the whiteboard open here.">
        <source>The chat and the whiteboard open here.</source>
        <translation>The chat and the whiteboard open here.</translation>
    </message>
    <message id="Bluetooth LE is not supported on this device">
        <source>Bluetooth LE is not supported on this device</source>
        <translation>Bluetooth LE is not supported on this device</translation>
    </message>
    <message id="CVTamber may not use Bluetooth. Allow it in the system settings.">
        <source>CVTamber may not use Bluetooth. Allow it in the system settings.</source>
        <translation>CVTamber may not use Bluetooth. Allow it in the system settings.</translation>
    </message>
    <message id="Bluetooth is off. Turn it on to find your Corvane.">
        <source>Bluetooth is off. Turn it on to find your Corvane.</source>
        <translation>Bluetooth is off. Turn it on to find your Corvane.</translation>
    </message>
    <message id="A Corvane is near but does not answer. Switch it off and on, and keep it near.">
        <source>A Corvane is near but does not answer. Switch it off and on, and keep it near.</source>
        <translation>A Corvane is near but does not answer. Switch it off and on, and keep it near.</translation>
    </message>
    <message id="Select Corvane Bluetooth device">
        <source>Select Corvane Bluetooth device</source>
        <translation>Select Corvane Bluetooth device</translation>
    </message>
    <message id="Cancel">
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message id="Found %@">
        <source>Found %@</source>
        <translation>Found %@</translation>
    </message>
    <message id="Connecting to Corvane">
        <source>Connecting to Corvane</source>
        <translation>Connecting to Corvane</translation>
    </message>
    <message id="Connected!">
        <source>Connected!</source>
        <translation>Connected!</translation>
    </message>
    <message id="Not connected!">
        <source>Not connected!</source>
        <translation>Not connected!</translation>
    </message>
    <message id="Retry">
        <source>Retry</source>
        <translation>Retry</translation>
    </message>
    <message id="Done">
        <source>Done</source>
        <translation>Done</translation>
    </message>
    <message id="The connection to the Corvane was lost.">
        <source>The connection to the Corvane was lost.</source>
        <translation>The connection to the Corvane was lost.</translation>
    </message>
    <message id="Language:">
        <source>Language:</source>
        <translation>Language:</translation>
    </message>
    <message id="Braille table:">
        <source>Braille table:</source>
        <translation>Braille table:</translation>
    </message>
    <message id="Mode:">
        <source>Mode:</source>
        <translation>Mode:</translation>
    </message>
    <message id="Firmware:">
        <source>Firmware:</source>
        <translation>Firmware:</translation>
    </message>
    <message id="Model:">
        <source>Model:</source>
        <translation>Model:</translation>
    </message>
    <message id="Serial No.:">
        <source>Serial No.:</source>
        <translation>Serial No.:</translation>
    </message>
    <message id="CVTamber version::">
        <source>CVTamber version::</source>
        <translation>CVTamber version::</translation>
    </message>
    <message id="State:">
        <source>State:</source>
        <translation>State:</translation>
    </message>
    <message id="Connected">
        <source>Connected</source>
        <translation>Connected</translation>
    </message>
    <message id="Disconnected">
        <source>Disconnected</source>
        <translation>Disconnected</translation>
    </message>
    <message id="Disconnect...">
        <source>Disconnect...</source>
        <translation>Disconnect...</translation>
    </message>
    <message id="Disconnect from Corvane">
        <source>Disconnect from Corvane</source>
        <translation>Disconnect from Corvane</translation>
    </message>
    <message id="Connect...">
        <source>Connect...</source>
        <translation>Connect...</translation>
    </message>
    <message id="Connect to Corvane">
        <source>Connect to Corvane</source>
        <translation>Connect to Corvane</translation>
    </message>
    <message id="Files:">
        <source>Files:</source>
        <translation>Files:</translation>
    </message>
    <message id="Show...">
        <source>Show...</source>
        <translation>Show...</translation>
    </message>
    <message id="Show files">
        <source>Show files</source>
        <translation>Show files</translation>
    </message>
    <message id="Reading the list of files">
        <source>Reading the list of files</source>
        <translation>Reading the list of files</translation>
    </message>
    <message id="Refresh">
        <source>Refresh</source>
        <translation>Refresh</translation>
    </message>
    <message id="Refresh files">
        <source>Refresh files</source>
        <translation>Refresh files</translation>
    </message>
    <message id="UEB:">
        <source>UEB:</source>
        <translation>UEB:</translation>
    </message>
    <message id="UEB contractions">
        <source>UEB contractions</source>
        <translation>UEB contractions</translation>
    </message>
    <message id="Advanced">
        <source>Advanced</source>
        <translation>Advanced</translation>
    </message>
    <message id="Learn">
        <source>Learn</source>
        <translation>Learn</translation>
    </message>
    <message id="Files on the Corvane: %@">
        <source>Files on the Corvane: %@</source>
        <translation>Files on the Corvane: %@</translation>
    </message>
    <message id="Corvane files">
        <source>Corvane files</source>
        <translation>Corvane files</translation>
    </message>
    <message id="Unknown">
        <source>Unknown</source>
        <translation>Unknown</translation>
    </message>
    <message id="Australian">
        <source>Australian</source>
        <translation>Australian</translation>
    </message>
    <message id="English">
        <source>English</source>
        <translation>English</translation>
    </message>
    <message id="American">
        <source>American</source>
        <translation>American</translation>
    </message>
    <message id="French">
        <source>French</source>
        <translation>French</translation>
    </message>
    <message id="Spanish">
        <source>Spanish</source>
        <translation>Spanish</translation>
    </message>
    <message id="Italian">
        <source>Italian</source>
        <translation>Italian</translation>
    </message>
    <message id="Portuguese">
        <source>Portuguese</source>
        <translation>Portuguese</translation>
    </message>
    <message id="German">
        <source>German</source>
        <translation>German</translation>
    </message>
    <message id="Norwegian">
        <source>Norwegian</source>
        <translation>Norwegian</translation>
    </message>
    <message id="Swedish">
        <source>Swedish</source>
        <translation>Swedish</translation>
    </message>
    <message id="Danish">
        <source>Danish</source>
        <translation>Danish</translation>
    </message>
    <message id="Dutch">
        <source>Dutch</source>
        <translation>Dutch</translation>
    </message>
    <message id="Finnish">
        <source>Finnish</source>
        <translation>Finnish</translation>
    </message>
    <message id="Greek">
        <source>Greek</source>
        <translation>Greek</translation>
    </message>
    <message id="Chinese">
        <source>Chinese</source>
        <translation>Chinese</translation>
    </message>
    <message id="Indonesia">
        <source>Indonesia</source>
        <translation>Indonesian</translation>
    </message>
    <message id="Polish">
        <source>Polish</source>
        <translation>Polish</translation>
    </message>
    <message id="Canadian">
        <source>Canadian</source>
        <translation>Canadian</translation>
    </message>
    <message id="Brazilian">
        <source>Brazilian</source>
        <translation>Brazilian</translation>
    </message>
    <message id="Czech">
        <source>Czech</source>
        <translation>Czech</translation>
    </message>
    <message id="Lithuanian">
        <source>Lithuanian</source>
        <translation>Lithuanian</translation>
    </message>
    <message id="Turkish">
        <source>Turkish</source>
        <translation>Turkish</translation>
    </message>
    <message id="Arabic">
        <source>Arabic</source>
        <translation>Arabic</translation>
    </message>
    <message id="Korean">
        <source>Korean</source>
        <translation>Korean</translation>
    </message>
    <message id="Russian">
        <source>Russian</source>
        <translation>Russian</translation>
    </message>
    <message id="Srilanka">
        <source>Srilanka</source>
        <translation>Sri Lankan</translation>
    </message>
    <message id="Latvian">
        <source>Latvian</source>
        <translation>Latvian</translation>
    </message>
    <message id="BC_UNKNOWN">
        <source>BC_UNKNOWN</source>
        <translation>Unknown</translation>
    </message>
    <message id="BC_NABCC">
        <source>BC_NABCC</source>
        <translation>North American computer braille (NABCC)</translation>
    </message>
    <message id="BC_ENGLISH_US">
        <source>BC_ENGLISH_US</source>
        <translation>English (American)</translation>
    </message>
    <message id="BC_ENGLISH_UK">
        <source>BC_ENGLISH_UK</source>
        <translation>English (British)</translation>
    </message>
    <message id="BC_POLISH_6">
        <source>BC_POLISH_6</source>
        <translation>Polish, 6 dots</translation>
    </message>
    <message id="BC_POLISH_8">
        <source>BC_POLISH_8</source>
        <translation>Polish, 8 dots</translation>
    </message>
    <message id="BC_SWEDISH">
        <source>BC_SWEDISH</source>
        <translation>Swedish</translation>
    </message>
    <message id="BC_NORWEGIAN_6">
        <source>BC_NORWEGIAN_6</source>
        <translation>Norwegian, 6 dots</translation>
    </message>
    <message id="BC_NORWEGIAN_8">
        <source>BC_NORWEGIAN_8</source>
        <translation>Norwegian, 8 dots</translation>
    </message>
    <message id="BC_FRENCH">
        <source>BC_FRENCH</source>
        <translation>French</translation>
    </message>
    <message id="BC_ITALIAN">
        <source>BC_ITALIAN</source>
        <translation>Italian</translation>
    </message>
    <message id="BC_GERMAN_6">
        <source>BC_GERMAN_6</source>
        <translation>German, 6 dots</translation>
    </message>
    <message id="BC_GERMAN_DIN_8">
        <source>BC_GERMAN_DIN_8</source>
        <translation>German DIN, 8 dots</translation>
    </message>
    <message id="BC_GERMAN_437_8">
        <source>BC_GERMAN_437_8</source>
        <translation>German code page 437, 8 dots</translation>
    </message>
    <message id="BC_GERMAN_850_8">
        <source>BC_GERMAN_850_8</source>
        <translation>German code page 850, 8 dots</translation>
    </message>
    <message id="BC_CZECH_6">
        <source>BC_CZECH_6</source>
        <translation>Czech, 6 dots</translation>
    </message>
    <message id="BC_CZECH_8">
        <source>BC_CZECH_8</source>
        <translation>Czech, 8 dots</translation>
    </message>
    <message id="BC_LITHUANIAN_8">
        <source>BC_LITHUANIAN_8</source>
        <translation>Lithuanian, 8 dots</translation>
    </message>
    <message id="BC_RUSSIAN_6">
        <source>BC_RUSSIAN_6</source>
        <translation>Russian, 6 dots</translation>
    </message>
    <message id="BC_ARABIC">
        <source>BC_ARABIC</source>
        <translation>Arabic</translation>
    </message>
    <message id="BC_LATVIAN">
        <source>BC_LATVIAN</source>
        <translation>Latvian</translation>
    </message>
    <message id="4.1">
        <source>New folder</source>
        <translation>New folder</translation>
    </message>
    <message id="4.2">
        <source>Fetch a file from the Corvane</source>
        <translation>Fetch a file from the Corvane</translation>
    </message>
    <message id="4.3">
        <source>What would you like to do?</source>
        <translation>What would you like to do?</translation>
    </message>
    <message id="4.4">
        <source>This name is taken</source>
        <translation>This name is taken</translation>
    </message>
    <message id="4.5">
        <source>The Corvane has a file of this name already. Enter another name.</source>
        <translation>The Corvane has a file of this name already. Enter another name.</translation>
    </message>
    <message id="A file on the Corvane needs a name.">
        <source>A file on the Corvane needs a name.</source>
        <translation>A file on the Corvane needs a name.</translation>
    </message>
    <message id="The name holds a control character, which the Corvane cannot list.">
        <source>The name holds a control character, which the Corvane cannot list.</source>
        <translation>The name holds a control character, which the Corvane cannot list.</translation>
    </message>
    <message id="The Corvane would end the name at its first space.">
        <source>The Corvane would end the name at its first space.</source>
        <translation>The Corvane would end the name at its first space.</translation>
    </message>
    <message id="The Corvane would take { or } in the name for a command.">
        <source>The Corvane would take { or } in the name for a command.</source>
        <translation>The Corvane would take { or } in the name for a command.</translation>
    </message>
    <message id="The Corvane cannot keep a name with a slash.">
        <source>The Corvane cannot keep a name with a slash.</source>
        <translation>The Corvane cannot keep a name with a slash.</translation>
    </message>
    <message id="The Corvane cannot list this name again. Letters from A to Z and digits are safe.">
        <source>The Corvane cannot list this name again. Letters from A to Z and digits are safe.</source>
        <translation>The Corvane cannot list this name again. Letters from A to Z and digits are safe.</translation>
    </message>
    <message id="The Corvane would take the name END for the end of the text.">
        <source>The Corvane would take the name END for the end of the text.</source>
        <translation>The Corvane would take the name END for the end of the text.</translation>
    </message>
    <message id="Another name is needed">
        <source>Another name is needed</source>
        <translation>Another name is needed</translation>
    </message>
    <message id="Enter another name.">
        <source>Enter another name.</source>
        <translation>Enter another name.</translation>
    </message>
    <message id="This text holds { or }">
        <source>This text holds { or }</source>
        <translation>This text holds { or }</translation>
    </message>
    <message id="The first one is in line %@. The Corvane would take it for a command.">
        <source>The first one is in line %@. The Corvane would take it for a command.</source>
        <translation>The first one is in line %@. The Corvane would take it for a command.</translation>
    </message>
    <message id="Send with ( and ) instead">
        <source>Send with ( and ) instead</source>
        <translation>Send with ( and ) instead</translation>
    </message>
    <message id="Characters that the Corvane does not have: %@">
        <source>Characters that the Corvane does not have: %@</source>
        <translation>Characters that the Corvane does not have: %@</translation>
    </message>
    <message id="They become question marks or lose their accents: %@">
        <source>They become question marks or lose their accents: %@</source>
        <translation>They become question marks or lose their accents: %@</translation>
    </message>
    <message id="Send anyway">
        <source>Send anyway</source>
        <translation>Send anyway</translation>
    </message>
    <message id="There is more than one %@ on the Corvane. Delete all but one there.">
        <source>There is more than one %@ on the Corvane. Delete all but one there.</source>
        <translation>There is more than one %@ on the Corvane. Delete all but one there.</translation>
    </message>
    <message id="The Corvane cannot be asked for %@ by this name. Rename or delete it there.">
        <source>The Corvane cannot be asked for %@ by this name. Rename or delete it there.</source>
        <translation>The Corvane cannot be asked for %@ by this name. Rename or delete it there.</translation>
    </message>
    <message id="4.6">
        <source>Embossing %@</source>
        <translation>Embossing %@</translation>
    </message>
    <message id="4.7">
        <source>Preview</source>
        <translation>Preview</translation>
    </message>
    <message id="4.8">
        <source>Send to the Corvane</source>
        <translation>Send to the Corvane</translation>
    </message>
    <message id="4.9">
        <source>Move…</source>
        <translation>Move…</translation>
    </message>
    <message id="4.10">
        <source>Send by e-mail</source>
        <translation>Send by e-mail</translation>
    </message>
    <message id="4.11">
        <source>Delete this document?</source>
        <translation>Delete this document?</translation>
    </message>
    <message id="4.12">
        <source>Delete this folder and everything in it?</source>
        <translation>Delete this folder and everything in it?</translation>
    </message>
    <message id="4.13">
        <source>Name of the new folder</source>
        <translation>Name of the new folder</translation>
    </message>
    <message id="4.14">
        <source>New folder</source>
        <translation>New folder</translation>
    </message>
    <message id="4.15">
        <source>Rename…</source>
        <translation>Rename…</translation>
    </message>
    <message id="4.16">
        <source>Move here</source>
        <translation>Move here</translation>
    </message>
    <message id="4.17">
        <source>Rename</source>
        <translation>Rename</translation>
    </message>
    <message id="4.18">
        <source>Both buttons apply the name as it stands here. Escape closes without renaming.</source>
        <translation>Both buttons apply the name as it stands here. Escape closes without renaming.</translation>
    </message>
    <message id="0.1">
        <source>Document: %@</source>
        <translation>Document: %@</translation>
    </message>
    <message id="Emboss">
        <source>Emboss</source>
        <translation>Emboss</translation>
    </message>
    <message id="OK">
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message id="Delete">
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message id="Yes">
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message id="No">
        <source>No</source>
        <translation>No</translation>
    </message>
    <message id="Files">
        <source>Files</source>
        <translation>Files</translation>
    </message>
    <message id="Folders">
        <source>Folders</source>
        <translation>Folders</translation>
    </message>
    <message id="Add">
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message id="Nothing here yet. Fetch a file from the Corvane.">
        <source>Nothing here yet. Fetch a file from the Corvane.</source>
        <translation>Nothing here yet. Fetch a file from the Corvane.</translation>
    </message>
    <message id="Nothing here yet. Add a folder, or fetch a file from the Corvane.">
        <source>Nothing here yet. Add a folder, or fetch a file from the Corvane.</source>
        <translation>Nothing here yet. Add a folder, or fetch a file from the Corvane.</translation>
    </message>
    <message id="This document is not here any more.">
        <source>This document is not here any more.</source>
        <translation>This document is not here any more.</translation>
    </message>
    <message id="This folder is not here any more.">
        <source>This folder is not here any more.</source>
        <translation>This folder is not here any more.</translation>
    </message>
    <message id="Folder without a name">
        <source>Folder without a name</source>
        <translation>Folder without a name</translation>
    </message>
    <message id="Saved as %@.">
        <source>Saved as %@.</source>
        <translation>Saved as %@.</translation>
    </message>
    <message id="A folder needs a name.">
        <source>A folder needs a name.</source>
        <translation>A folder needs a name.</translation>
    </message>
    <message id="A document needs a name.">
        <source>A document needs a name.</source>
        <translation>A document needs a name.</translation>
    </message>
    <message id="No program on this device shows text files.">
        <source>No program on this device shows text files.</source>
        <translation>No program on this device shows text files.</translation>
    </message>
    <message id="The message could not be handed to the mail program.">
        <source>The message could not be handed to the mail program.</source>
        <translation>The message could not be handed to the mail program.</translation>
    </message>
    <message id="The preview could not be made.">
        <source>The preview could not be made.</source>
        <translation>The preview could not be made.</translation>
    </message>
    <message id="There is no mail program on this device.">
        <source>There is no mail program on this device.</source>
        <translation>There is no mail program on this device.</translation>
    </message>
    <message id="This document holds something that is not text.">
        <source>This document holds something that is not text.</source>
        <translation>This document holds something that is not text.</translation>
    </message>
    <message id="Keys">
        <source>Keys</source>
        <translation>Keys</translation>
    </message>
    <message id="%1 of %2 left">
        <source>%1 of %2 left</source>
        <translation>%1 of %2 left</translation>
    </message>
    <message id="All rows are shown">
        <source>All rows are shown</source>
        <translation>All rows are shown</translation>
    </message>
    <message id="No row has what you look for.">
        <source>No row has what you look for.</source>
        <translation>No row has what you look for.</translation>
    </message>
    <message id="Filter">
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message id="Filter %1">
        <source>Filter %1</source>
        <translation>Filter %1</translation>
    </message>
    <message id="Menu">
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message id="Open…">
        <source>Open…</source>
        <translation>Open…</translation>
    </message>
    <message id="About CVTamber">
        <source>About CVTamber</source>
        <translation>About CVTamber</translation>
    </message>
    <message id="CVTamber %@">
        <source>CVTamber %@</source>
        <translation>CVTamber %@</translation>
    </message>
    <message id="The companion of the Corvane braille writing device. It is free software under the GPL, version 3 or later, and comes without a warranty.">
        <source>The companion of the Corvane braille writing device. It is free software under the GPL, version 3 or later, and comes without a warranty.</source>
        <translation>The companion of the Corvane braille writing device. It is free software under the GPL, version 3 or later, and comes without a warranty.</translation>
    </message>
    <message id="Open texts">
        <source>Open texts</source>
        <translation>Open texts</translation>
    </message>
    <message id="This system has no window for choosing files. Drop them on this window, or open them with CVTamber in your file manager.">
        <source>This system has no window for choosing files. Drop them on this window, or open them with CVTamber in your file manager.</source>
        <translation>This system has no window for choosing files. Drop them on this window, or open them with CVTamber in your file manager.</translation>
    </message>
    <message id="Only files can be dropped here.">
        <source>Only files can be dropped here.</source>
        <translation>Only files can be dropped here.</translation>
    </message>
    <message id="Texts are not opened by the settings.">
        <source>Texts are not opened by the settings.</source>
        <translation>Texts are not opened by the settings.</translation>
    </message>
    <message id="Tab, Shift+Tab">
        <source>Tab, Shift+Tab</source>
        <translation>Tab, Shift+Tab</translation>
    </message>
    <message id="from control to control; a list is one stop">
        <source>from control to control; a list is one stop</source>
        <translation>from control to control; a list is one stop</translation>
    </message>
    <message id="Arrows, Home, End, Page Up, Page Down, letters">
        <source>Arrows, Home, End, Page Up, Page Down, letters</source>
        <translation>Arrows, Home, End, Page Up, Page Down, letters</translation>
    </message>
    <message id="from row to row">
        <source>from row to row</source>
        <translation>from row to row</translation>
    </message>
    <message id="Enter, Space">
        <source>Enter, Space</source>
        <translation>Enter, Space</translation>
    </message>
    <message id="what a touch does">
        <source>what a touch does</source>
        <translation>what a touch does</translation>
    </message>
    <message id="Menu, Shift+F10">
        <source>Menu, Shift+F10</source>
        <translation>Menu, Shift+F10</translation>
    </message>
    <message id="the row&apos;s detail button">
        <source>the row&apos;s detail button</source>
        <translation>the row&apos;s detail button</translation>
    </message>
    <message id="Delete key">
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message id="deletes the row, where rows can be deleted">
        <source>deletes the row, where rows can be deleted</source>
        <translation>deletes the row, where rows can be deleted</translation>
    </message>
    <message id="F2">
        <source>F2</source>
        <translation>F2</translation>
    </message>
    <message id="F6">
        <source>F6</source>
        <translation>F6</translation>
    </message>
    <message id="from one column to the other">
        <source>from one column to the other</source>
        <translation>from one column to the other</translation>
    </message>
    <message id="renames a document or folder">
        <source>renames a document or folder</source>
        <translation>renames a document or folder</translation>
    </message>
    <message id="Escape">
        <source>Escape</source>
        <translation>Escape</translation>
    </message>
    <message id="Cancel or back; ends a filter; closes Rename without renaming">
        <source>Cancel or back; ends a filter; closes Rename without renaming</source>
        <translation>Cancel or back; ends a filter; closes Rename without renaming</translation>
    </message>
    <message id="Ctrl+F">
        <source>Ctrl+F</source>
        <translation>Ctrl+F</translation>
    </message>
    <message id="filters a list of more than ten rows">
        <source>filters a list of more than ten rows</source>
        <translation>filters a list of more than ten rows</translation>
    </message>
    <message id="Ctrl+O">
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message id="opens texts of this computer">
        <source>opens texts of this computer</source>
        <translation>opens texts of this computer</translation>
    </message>
    <message id="Ctrl+Page Up, Ctrl+Page Down">
        <source>Ctrl+Page Up, Ctrl+Page Down</source>
        <translation>Ctrl+Page Up, Ctrl+Page Down</translation>
    </message>
    <message id="from section to section">
        <source>from section to section</source>
        <translation>from section to section</translation>
    </message>
    <message id="Ctrl+C">
        <source>Ctrl+C</source>
        <translation>Ctrl+C</translation>
    </message>
    <message id="copies a message of the chat">
        <source>copies a message of the chat</source>
        <translation>copies a message of the chat</translation>
    </message>
    <message id="Ctrl+W, Ctrl+Q">
        <source>Ctrl+W, Ctrl+Q</source>
        <translation>Ctrl+W, Ctrl+Q</translation>
    </message>
    <message id="closes the window">
        <source>closes the window</source>
        <translation>closes the window</translation>
    </message>
    <message id="F1">
        <source>F1</source>
        <translation>F1</translation>
    </message>
    <message id="shows these keys">
        <source>shows these keys</source>
        <translation>shows these keys</translation>
    </message>
    <message id="Edit">
        <source>Edit</source>
        <translation>Edit</translation>
    </message>
    <message id="Editing">
        <source>Editing</source>
        <translation>Editing</translation>
    </message>
    <message id="Editing has ended">
        <source>Editing has ended</source>
        <translation>Editing has ended</translation>
    </message>
    <message id="Corvane">
        <source>Corvane</source>
        <translation>Corvane</translation>
    </message>
    <message id="%@ is larger than 5 MB and was not opened.">
        <source>%@ is larger than 5 MB and was not opened.</source>
        <translation>%@ is larger than 5 MB and was not opened.</translation>
    </message>
    <message id="%@ is waiting. It opens when this is closed.">
        <source>%@ is waiting. It opens when this is closed.</source>
        <translation>%@ is waiting. It opens when this is closed.</translation>
    </message>
    <message id="Something else was opened meanwhile. Please choose again.">
        <source>Something else was opened meanwhile. Please choose again.</source>
        <translation>Something else was opened meanwhile. Please choose again.</translation>
    </message>
    <message id="%@ does not hold text that can be read.">
        <source>%@ does not hold text that can be read.</source>
        <translation>%@ does not hold text that can be read.</translation>
    </message>
    <message id="%@ could not be opened.">
        <source>%@ could not be opened.</source>
        <translation>%@ could not be opened.</translation>
    </message>
    <message id="iCloud was turned on">
        <source>iCloud was turned on</source>
        <translation>iCloud was turned on</translation>
    </message>
    <message id="iCloud was turned off">
        <source>iCloud was turned off</source>
        <translation>iCloud was turned off</translation>
    </message>
    <message id="What is to be done with the files?">
        <source>What is to be done with the files?</source>
        <translation>What is to be done with the files?</translation>
    </message>
    <message id="Move the files">
        <source>Move the files</source>
        <translation>Move the files</translation>
    </message>
    <message id="Copy the files">
        <source>Copy the files</source>
        <translation>Copy the files</translation>
    </message>
    <message id="Keep the files on this device">
        <source>Keep the files on this device</source>
        <translation>Keep the files on this device</translation>
    </message>
    <message id="Keep the files in iCloud">
        <source>Keep the files in iCloud</source>
        <translation>Keep the files in iCloud</translation>
    </message>
    <message id="%@ could not be taken over.">
        <source>%@ could not be taken over.</source>
        <translation>%@ could not be taken over.</translation>
    </message>
    <message id="Settings">
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message id="Documents">
        <source>Documents</source>
        <translation>Documents</translation>
    </message>
    <message id="Documents are kept on this computer.">
        <source>Documents are kept on this computer.</source>
        <translation>Documents are kept on this computer.</translation>
    </message>
    <message id="Keep documents in the cloud">
        <source>Keep documents in the cloud</source>
        <translation>Keep documents in the cloud</translation>
    </message>
    <message id="Cloud folder">
        <source>Cloud folder</source>
        <translation>Cloud folder</translation>
    </message>
    <message id="Not chosen yet">
        <source>Not chosen yet</source>
        <translation>Not chosen yet</translation>
    </message>
    <message id="Which folder does your cloud program keep up to date? Type its whole path, for example ~/Cloud.">
        <source>Which folder does your cloud program keep up to date? Type its whole path, for example ~/Cloud.</source>
        <translation>Which folder does your cloud program keep up to date? Type its whole path, for example ~/Cloud.</translation>
    </message>
    <message id="Choose">
        <source>Choose</source>
        <translation>Choose</translation>
    </message>
    <message id="%@ is not a folder.">
        <source>%@ is not a folder.</source>
        <translation>%@ is not a folder.</translation>
    </message>
    <message id="This folder holds the documents of this computer. Choose another one.">
        <source>This folder holds the documents of this computer. Choose another one.</source>
        <translation>This folder holds the documents of this computer. Choose another one.</translation>
    </message>
    <message id="CVTamber runs twice. Close one of them, so that they do not change the same documents.">
        <source>CVTamber runs twice. Close one of them, so that they do not change the same documents.</source>
        <translation>CVTamber runs twice. Close one of them, so that they do not change the same documents.</translation>
    </message>
    <message id="%@ is not on this computer and was not opened.">
        <source>%@ is not on this computer and was not opened.</source>
        <translation>%@ is not on this computer and was not opened.</translation>
    </message>
    <message id="A document or record could not be opened.">
        <source>A document or record could not be opened.</source>
        <translation>A document or record could not be opened.</translation>
    </message>
    <message id="%@ could not be saved.">
        <source>%@ could not be saved.</source>
        <translation>%@ could not be saved.</translation>
    </message>
    <message id="A change could not be saved.">
        <source>A change could not be saved.</source>
        <translation>A change could not be saved.</translation>
    </message>
    <message id="%@ was changed by another program too. Both versions have been kept.">
        <source>%@ was changed by another program too. Both versions have been kept.</source>
        <translation>%@ was changed by another program too. Both versions have been kept.</translation>
    </message>
    <message id="Another program changed the same document. Both versions have been kept.">
        <source>Another program changed the same document. Both versions have been kept.</source>
        <translation>Another program changed the same document. Both versions have been kept.</translation>
    </message>
    <message id="%@ could not be deleted.">
        <source>%@ could not be deleted.</source>
        <translation>%@ could not be deleted.</translation>
    </message>
    <message id="Not everything could be deleted.">
        <source>Not everything could be deleted.</source>
        <translation>Not everything could be deleted.</translation>
    </message>
    <message id="%@ could not be renamed.">
        <source>%@ could not be renamed.</source>
        <translation>%@ could not be renamed.</translation>
    </message>
    <message id="The new name could not be given.">
        <source>The new name could not be given.</source>
        <translation>The new name could not be given.</translation>
    </message>
    <message id="%@ could not be moved.">
        <source>%@ could not be moved.</source>
        <translation>%@ could not be moved.</translation>
    </message>
    <message id="Not everything could be moved.">
        <source>Not everything could be moved.</source>
        <translation>Not everything could be moved.</translation>
    </message>
    <message id="%@ could not be created.">
        <source>%@ could not be created.</source>
        <translation>%@ could not be created.</translation>
    </message>
    <message id="A folder could not be created.">
        <source>A folder could not be created.</source>
        <translation>A folder could not be created.</translation>
    </message>
    <message id="%@ could not be read.">
        <source>%@ could not be read.</source>
        <translation>%@ could not be read.</translation>
    </message>
    <message id="A folder could not be read, so not all documents are listed.">
        <source>A folder could not be read, so not all documents are listed.</source>
        <translation>A folder could not be read, so not all documents are listed.</translation>
    </message>
    <message id="%@ is in the trash now.">
        <source>%@ is in the trash now.</source>
        <translation>%@ is in the trash now.</translation>
    </message>
    <message id="A folder without a user's record is in the trash now.">
        <source>A folder without a user's record is in the trash now.</source>
        <translation>A folder without a user's record is in the trash now.</translation>
    </message>
    <message id="%@ holds documents, but belongs to no user.">
        <source>%@ holds documents, but belongs to no user.</source>
        <translation>%@ holds documents, but belongs to no user.</translation>
    </message>
    <message id="A folder without a user's record holds documents and could not be put into the trash.">
        <source>A folder without a user's record holds documents and could not be put into the trash.</source>
        <translation>A folder without a user's record holds documents and could not be put into the trash.</translation>
    </message>
    <message id="%@ could not be fetched from the cloud.">
        <source>%@ could not be fetched from the cloud.</source>
        <translation>%@ could not be fetched from the cloud.</translation>
    </message>
    <message id="A document could not be fetched from the cloud.">
        <source>A document could not be fetched from the cloud.</source>
        <translation>A document could not be fetched from the cloud.</translation>
    </message>
    <message id="The disk is full.">
        <source>The disk is full.</source>
        <translation>The disk is full.</translation>
    </message>
    <message id="There is no permission for it.">
        <source>There is no permission for it.</source>
        <translation>There is no permission for it.</translation>
    </message>
    <message id="Nothing can be written there.">
        <source>Nothing can be written there.</source>
        <translation>Nothing can be written there.</translation>
    </message>
    <message id="It or its folder is not there any more.">
        <source>It or its folder is not there any more.</source>
        <translation>It or its folder is not there any more.</translation>
    </message>
    <message id="This title is in use there.">
        <source>This title is in use there.</source>
        <translation>This title is in use there.</translation>
    </message>
    <message id="It is not a file.">
        <source>It is not a file.</source>
        <translation>It is not a file.</translation>
    </message>
    <message id="1 document">
        <source>1 document</source>
        <translation>1 document</translation>
    </message>
    <message id="%@ documents">
        <source>%@ documents</source>
        <translation>%@ documents</translation>
    </message>
    <message id="Files moved to iCloud">
        <source>Files moved to iCloud</source>
        <translation>Files moved to iCloud</translation>
    </message>
    <message id="Files copied to iCloud">
        <source>Files copied to iCloud</source>
        <translation>Files copied to iCloud</translation>
    </message>
    <message id="iCloud is still disabled">
        <source>iCloud is still disabled</source>
        <translation>iCloud is still disabled</translation>
    </message>
    <message id="Files moved to local storage">
        <source>Files moved to local storage</source>
        <translation>Files moved to local storage</translation>
    </message>
    <message id="Files copied to local storage">
        <source>Files copied to local storage</source>
        <translation>Files copied to local storage</translation>
    </message>
    <message id="iCloud is still enabled">
        <source>iCloud is still enabled</source>
        <translation>iCloud is still enabled</translation>
    </message>
    <message id="3.1">
        <source>Sending “%@” to the Corvane</source>
        <translation>Sending “%@” to the Corvane</translation>
    </message>
    <message id="3.2">
        <source>Fetching “%@” from the Corvane</source>
        <translation>Fetching “%@” from the Corvane</translation>
    </message>
    <message id="3.3">
        <source>Is this file in braille? The Corvane can turn it into print.</source>
        <translation>Is this file in braille? The Corvane can turn it into print.</translation>
    </message>
    <message id="3.4">
        <source>Turn into print</source>
        <translation>Turn into print</translation>
    </message>
    <message id="3.5">
        <source>Fetch as it is</source>
        <translation>Fetch as it is</translation>
    </message>
    <message id="3.6">
        <source>The Corvane can turn this text into braille.</source>
        <translation>The Corvane can turn this text into braille.</translation>
    </message>
    <message id="3.7">
        <source>Turn into braille</source>
        <translation>Turn into braille</translation>
    </message>
    <message id="3.8">
        <source>Send as it is</source>
        <translation>Send as it is</translation>
    </message>
    <message id="5.1">
        <source>Save here</source>
        <translation>Save here</translation>
    </message>
    <message id="5.3">
        <source>View</source>
        <translation>View</translation>
    </message>
    <message id="5.4">
        <source>Delete “%@” from the Corvane?</source>
        <translation>Delete “%@” from the Corvane?</translation>
    </message>
    <message id="%@ percent">
        <source>%@ percent</source>
        <translation>%@ percent</translation>
    </message>
    <message id="%@ characters that the Corvane does not have were sent as &quot;?&quot; or without their accents.">
        <source>%@ characters that the Corvane does not have were sent as &quot;?&quot; or without their accents.</source>
        <translation>%@ characters that the Corvane does not have were sent as &quot;?&quot; or without their accents.</translation>
    </message>
    <message id="1 character that the Corvane does not have was sent as &quot;?&quot; or without its accent.">
        <source>1 character that the Corvane does not have was sent as &quot;?&quot; or without its accent.</source>
        <translation>1 character that the Corvane does not have was sent as &quot;?&quot; or without its accent.</translation>
    </message>
    <message id="%@ has been deleted.">
        <source>“%@” has been deleted.</source>
        <translation>“%@” has been deleted.</translation>
    </message>
    <message id="%@ is not on the Corvane any more.">
        <source>“%@” is not on the Corvane any more.</source>
        <translation>“%@” is not on the Corvane any more.</translation>
    </message>
    <message id="Part of it did not reach the Corvane. Send it again.">
        <source>Part of it did not reach the Corvane. Send it again.</source>
        <translation>Part of it did not reach the Corvane. Send it again.</translation>
    </message>
    <message id="Some characters of the file are unknown. A mark stands in place of each.">
        <source>Some characters of the file are unknown. A mark stands in place of each.</source>
        <translation>Some characters of the file are unknown. A mark stands in place of each.</translation>
    </message>
    <message id="The Corvane did not say that the file was complete. Its end may be missing.">
        <source>The Corvane did not say that the file was complete. Its end may be missing.</source>
        <translation>The Corvane did not say that the file was complete. Its end may be missing.</translation>
    </message>
    <message id="The Corvane does not answer.">
        <source>The Corvane does not answer.</source>
        <translation>The Corvane does not answer.</translation>
    </message>
    <message id="The Corvane does not answer. You can wait, or choose Cancel.">
        <source>The Corvane does not answer. You can wait, or choose Cancel.</source>
        <translation>The Corvane does not answer. You can wait, or choose Cancel.</translation>
    </message>
    <message id="The Corvane is not connected.">
        <source>The Corvane is not connected.</source>
        <translation>The Corvane is not connected.</translation>
    </message>
    <message id="The Corvane is still busy. Try again in half a minute.">
        <source>The Corvane is still busy. Try again in half a minute.</source>
        <translation>The Corvane is still busy. Try again in half a minute.</translation>
    </message>
    <message id="The Corvane sent nothing. The file has not been fetched.">
        <source>The Corvane sent nothing. The file has not been fetched.</source>
        <translation>The Corvane sent nothing. The file has not been fetched.</translation>
    </message>
    <message id="The connection to the Corvane was lost. Part of the text may be missing.">
        <source>The connection to the Corvane was lost. Part of the text may be missing.</source>
        <translation>The connection to the Corvane was lost. Part of the text may be missing.</translation>
    </message>
    <message id="The connection to the Corvane was lost. The file has not been fetched.">
        <source>The connection to the Corvane was lost. The file has not been fetched.</source>
        <translation>The connection to the Corvane was lost. The file has not been fetched.</translation>
    </message>
    <message id="The file has been fetched.">
        <source>The file has been fetched.</source>
        <translation>The file has been fetched.</translation>
    </message>
    <message id="The file has been sent.">
        <source>The file has been sent.</source>
        <translation>The file has been sent.</translation>
    </message>
    <message id="The text has been sent to the embosser.">
        <source>The text has been sent to the embosser.</source>
        <translation>The text has been sent to the embosser.</translation>
    </message>
    <message id="There are no files on the Corvane. Write one on it, then choose Refresh.">
        <source>There are no files on the Corvane. Write one on it, then choose Refresh.</source>
        <translation>There are no files on the Corvane. Write one on it, then choose Refresh.</translation>
    </message>
    <message id="Please wait…">
        <source>Please wait…</source>
        <translation>Please wait…</translation>
    </message>
    <message id="1.1">
        <source>Delete this user?</source>
        <translation>Delete this user?</translation>
    </message>
    <message id="1.2">
        <source>%@ is deleted with all documents and folders.</source>
        <translation>%@ is deleted with all documents and folders.</translation>
    </message>
    <message id="1.3">
        <source>User</source>
        <translation>User</translation>
    </message>
    <message id="1.4">
        <source>First name</source>
        <translation>First name</translation>
    </message>
    <message id="1.5">
        <source>For example Ann</source>
        <translation>For example Ann</translation>
    </message>
    <message id="1.6">
        <source>Last name</source>
        <translation>Last name</translation>
    </message>
    <message id="1.7">
        <source>For example Lee</source>
        <translation>For example Lee</translation>
    </message>
    <message id="1.8">
        <source>Name shown in lists</source>
        <translation>Name shown in lists</translation>
    </message>
    <message id="1.9">
        <source>Only if it is another, for example Mrs Lee</source>
        <translation>Such as Mrs Lee</translation>
    </message>
    <message id="1.10">
        <source>Move to the archive</source>
        <translation>Move to the archive</translation>
    </message>
    <message id="1.11">
        <source>Move back to the users</source>
        <translation>Move back to the users</translation>
    </message>
    <message id="2.2">
        <source>Add the first user</source>
        <translation>Add the first user</translation>
    </message>
    <message id="2.3">
        <source>Delete this user?</source>
        <translation>Delete this user?</translation>
    </message>
    <message id="2.4">
        <source>%@ is deleted with all documents and folders.</source>
        <translation>%@ is deleted with all documents and folders.</translation>
    </message>
    <message id="2.5">
        <source>Edit names</source>
        <translation>Edit names</translation>
    </message>
    <message id="2.6">
        <source>Move to the archive</source>
        <translation>Move to the archive</translation>
    </message>
    <message id="2.7">
        <source>Move back to the users</source>
        <translation>Move back to the users</translation>
    </message>
    <message id="2.8">
        <source>Users</source>
        <translation>Users</translation>
    </message>
    <message id="2.9">
        <source>Archive</source>
        <translation>Archive</translation>
    </message>
    <message id="2.10">
        <source>No archived users. To archive one, choose Edit in the list of users.</source>
        <translation>No archived users. To archive one, choose Edit in the list of users.</translation>
    </message>
    <message id="6.1">
        <source>This text has not been saved. Do you want to save it?</source>
        <translation>This text has not been saved. Do you want to save it?</translation>
    </message>
    <message id="6.2">
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message id="6.3">
        <source>Close without saving</source>
        <translation>Close without saving</translation>
    </message>
    <message id="6.4">
        <source>E-mail as text</source>
        <translation>E-mail as text</translation>
    </message>
    <message id="6.5">
        <source>E-mail as attachment</source>
        <translation>E-mail as attachment</translation>
    </message>
    <message id="Add user">
        <source>Add user</source>
        <translation>Add user</translation>
    </message>
    <message id="Edit %@">
        <source>Edit %@</source>
        <translation>Edit %@</translation>
    </message>
    <message id="Loading">
        <source>Loading</source>
        <translation>Loading</translation>
    </message>
    <message id="No name">
        <source>No name</source>
        <translation>No name</translation>
    </message>
    <message id="Save">
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message id="Send">
        <source>Send</source>
        <translation>Send</translation>
    </message>
    <message id="The text has not been saved yet.">
        <source>The text has not been saved yet.</source>
        <translation>The text has not been saved yet.</translation>
    </message>
    <message id="The cloud folder is not there. Its documents are shown when it is back.">
        <source>The cloud folder is not there. Its documents are shown when it is back.</source>
        <translation>The cloud folder is not there. Its documents are shown when it is back.</translation>
    </message>
    <message id="There is no place for documents. Choose one in the settings.">
        <source>There is no place for documents. Choose one in the settings.</source>
        <translation>There is no place for documents. Choose one in the settings.</translation>
    </message>
    <message id="This user is not there any more.">
        <source>This user is not there any more.</source>
        <translation>This user is not there any more.</translation>
    </message>
    <message id="Some characters of the text became question marks in the attachment.">
        <source>Some characters of the text became question marks in the attachment.</source>
        <translation>Some characters of the text became question marks in the attachment.</translation>
    </message>
    <message id="The attachment is empty, because it cannot hold all characters of the text.">
        <source>The attachment is empty, because it cannot hold all characters of the text.</source>
        <translation>The attachment is empty, because it cannot hold all characters of the text.</translation>
    </message>
    <message id="%@ more could not be opened.">
        <source>%@ more could not be opened.</source>
        <translation>%@ more could not be opened.</translation>
    </message>
    <message id="Documents cannot be kept on this computer, because nothing can be written to %@.">
        <source>Documents cannot be kept on this computer, because nothing can be written to %@.</source>
        <translation>Documents cannot be kept on this computer, because nothing can be written to %@.</translation>
    </message>
    <message id="A cloud folder has not been chosen yet.">
        <source>A cloud folder has not been chosen yet.</source>
        <translation>A cloud folder has not been chosen yet.</translation>
    </message>
    <message id="The cloud folder is not there.">
        <source>The cloud folder is not there.</source>
        <translation>The cloud folder is not there.</translation>
    </message>
    <message id="Nothing can be written to the cloud folder.">
        <source>Nothing can be written to the cloud folder.</source>
        <translation>Nothing can be written to the cloud folder.</translation>
    </message>
    <message id="Documents are kept in the cloud folder.">
        <source>Documents are kept in the cloud folder.</source>
        <translation>Documents are kept in the cloud folder.</translation>
    </message>
    <message id="A cloud folder lets you use them on other devices too.">
        <source>A cloud folder lets you use them on other devices too.</source>
        <translation>A cloud folder lets you use them on other devices too.</translation>
    </message>
    <message id="Put that right, or keep the documents in a cloud folder.">
        <source>Put that right, or keep the documents in a cloud folder.</source>
        <translation>Put that right, or keep the documents in a cloud folder.</translation>
    </message>
    <message id="Start your cloud program, choose another folder, or turn the switch off to go back to the documents on this computer.">
        <source>Start your cloud program, choose another folder, or turn the switch off to go back to the documents on this computer.</source>
        <translation>Start your cloud program, choose another folder, or turn the switch off to go back to the documents on this computer.</translation>
    </message>
    <message id="Choose a folder, or turn the switch off to go back to the documents on this computer.">
        <source>Choose a folder, or turn the switch off to go back to the documents on this computer.</source>
        <translation>Choose a folder, or turn the switch off to go back to the documents on this computer.</translation>
    </message>
    <message id="CVTamber goes over to it when its window comes to the front.">
        <source>CVTamber goes over to it when its window comes to the front.</source>
        <translation>CVTamber goes over to it when its window comes to the front.</translation>
    </message>
    <message id="Opening">
        <source>Opening</source>
        <translation>Opening</translation>
    </message>
    <message id="Clear text">
        <source>Clear text</source>
        <translation>Clear text</translation>
    </message>
    <message id="Clear %1">
        <source>Clear %1</source>
        <translation>Clear %1</translation>
    </message>
    <message id="Dialog">
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message id="Back">
        <source>Back</source>
        <translation>Back</translation>
    </message>
    <message id="Not available">
        <source>Not available</source>
        <translation>Not available</translation>
    </message>
    <message id="Delete %1">
        <source>Delete %1</source>
        <translation>Delete %1</translation>
    </message>
    <message id="Actions">
        <source>Actions</source>
        <translation>Actions</translation>
    </message>
    <message id="Sections">
        <source>Sections</source>
        <translation>Sections</translation>
    </message>
    <message id="%1 of %2">
        <source>%1 of %2</source>
        <translation>%1 of %2</translation>
    </message>
    <message id="Transfer">
        <source>Transfer</source>
        <translation>Transfer</translation>
    </message>
    <message id="Progress: %1 %">
        <source>Progress: %1 %</source>
        <translation>Progress: %1 %</translation>
    </message>
    <message id="Grade 1">
        <source>Grade 1</source>
        <translation>Grade 1</translation>
    </message>
    <message id="Grade 2">
        <source>Grade 2</source>
        <translation>Grade 2</translation>
    </message>
    <message id="What was written last may not have reached the Corvane.">
        <source>What was written last may not have reached the Corvane.</source>
        <translation>What was written last may not have reached the Corvane.</translation>
    </message>
    <message id="The connection to the Corvane was lost. What was written last may not have reached it.">
        <source>The connection to the Corvane was lost. What was written last may not have reached it.</source>
        <translation>The connection to the Corvane was lost. What was written last may not have reached it.</translation>
    </message>
    <message id="Characters that the Corvane does not have are sent as &quot;?&quot; or without their accents.">
        <source>Characters that the Corvane does not have are sent as &quot;?&quot; or without their accents.</source>
        <translation>Characters that the Corvane does not have are sent as &quot;?&quot; or without their accents.</translation>
    </message>
    <message id="You: %@">
        <source>You: %@</source>
        <translation>You: %@</translation>
    </message>
    <message id="Device: %@">
        <source>Device: %@</source>
        <translation>Device: %@</translation>
    </message>
    <message id="Picture">
        <source>Picture</source>
        <translation>Picture</translation>
    </message>
    <message id="You are typing">
        <source>You are typing</source>
        <translation>You are typing</translation>
    </message>
    <message id="The device is typing">
        <source>The device is typing</source>
        <translation>The device is typing</translation>
    </message>
    <message id="Conversation">
        <source>Conversation</source>
        <translation>Conversation</translation>
    </message>
    <message id="Whiteboard">
        <source>Whiteboard</source>
        <translation>Whiteboard</translation>
    </message>
    <message id="Chat">
        <source>Chat</source>
        <translation>Chat</translation>
    </message>
    <message id="The device sends too much text at once. Some of it is lost.">
        <source>The device sends too much text at once. Some of it is lost.</source>
        <translation>The device sends too much text at once. Some of it is lost.</translation>
    </message>
    <message id="What was not sent yet goes with the next space or line end.">
        <source>What was not sent yet goes with the next space or line end.</source>
        <translation>What was not sent yet goes with the next space or line end.</translation>
    </message>
    <message id="The whiteboard is full. What comes now is not kept.">
        <source>The whiteboard is full. What comes now is not kept.</source>
        <translation>The whiteboard is full. What comes now is not kept.</translation>
    </message>
    <message id="This part of the page is fixed. Write after it.">
        <source>This part of the page is fixed. Write after it.</source>
        <translation>This part of the page is fixed. Write after it.</translation>
    </message>
    <message id="Other version of %@">
        <source>Other version of %@</source>
        <translation>Other version of %@</translation>
    </message>
    <message id="Keep this version">
        <source>Keep this version</source>
        <translation>Keep this version</translation>
    </message>
    <message id="Keep the other version">
        <source>Keep the other version</source>
        <translation>Keep the other version</translation>
    </message>
    <message id="Keep both">
        <source>Keep both</source>
        <translation>Keep both</translation>
    </message>
    <message id="Not everything is saved">
        <source>Not everything is saved</source>
        <translation>Not everything is saved</translation>
    </message>
    <message id="%@ more could not be saved.">
        <source>%@ more could not be saved.</source>
        <translation>%@ more could not be saved.</translation>
    </message>
    <message id="Not sent: the Corvane would take { or } for a command. Write ( and ) instead.">
        <source>Not sent: the Corvane would take { or } for a command. Write ( and ) instead.</source>
        <translation>Not sent: the Corvane would take { or } for a command. Write ( and ) instead.</translation>
    </message>
    <message id="Message to the device">
        <source>Message to the device</source>
        <translation>Message to the device</translation>
    </message>
    <message id="Connecting again">
        <source>Connecting again</source>
        <translation>Connecting again</translation>
    </message>
    <message id="Do not connect to the Corvane again">
        <source>Do not connect to the Corvane again</source>
        <translation>Do not connect to the Corvane again</translation>
    </message>
    <message id="The Corvane is connected again.">
        <source>The Corvane is connected again.</source>
        <translation>The Corvane is connected again.</translation>
    </message>
    <message id="The connection to the Corvane was lost. Trying to connect again.">
        <source>The connection to the Corvane was lost. Trying to connect again.</source>
        <translation>The connection to the Corvane was lost. Trying to connect again.</translation>
    </message>
    <message id="The Corvane does not answer. Its files are not known.">
        <source>The Corvane does not answer. Its files are not known.</source>
        <translation>The Corvane does not answer. Its files are not known.</translation>
    </message>
    <message id="The Corvane is busy. One moment, please.">
        <source>The Corvane is busy. One moment, please.</source>
        <translation>The Corvane is busy. One moment, please.</translation>
    </message>
    <message id="What you write is not sent yet.">
        <source>What you write is not sent yet.</source>
        <translation>What you write is not sent yet.</translation>
    </message>
    <message id="Trying to connect again.">
        <source>Trying to connect again.</source>
        <translation>Trying to connect again.</translation>
    </message>
    <message id="The file has been fetched. It may be incomplete.">
        <source>The file has been fetched. It may be incomplete.</source>
        <translation>The file has been fetched. It may be incomplete.</translation>
    </message>
    <message id="You have cancelled. The file on the Corvane is incomplete.">
        <source>You have cancelled. The file on the Corvane is incomplete.</source>
        <translation>You have cancelled. The file on the Corvane is incomplete.</translation>
    </message>
    <message id="You have cancelled. The rest of the text does not come onto the paper.">
        <source>You have cancelled. The rest of the text does not come onto the paper.</source>
        <translation>You have cancelled. The rest of the text does not come onto the paper.</translation>
    </message>
    <message id="The Corvane goes on sending the file. It is busy until it has finished, or has said nothing for half a minute.">
        <source>The Corvane goes on sending the file. It is busy until it has finished, or has said nothing for half a minute.</source>
        <translation>The Corvane goes on sending the file. It is busy until it has finished, or has said nothing for half a minute.</translation>
    </message>
    <message id="All of the text had been sent already. The Corvane has not confirmed it yet.">
        <source>All of the text had been sent already. The Corvane has not confirmed it yet.</source>
        <translation>All of the text had been sent already. The Corvane has not confirmed it yet.</translation>
    </message>
    <message id="No Corvane seen. Is it on, charged and near? Is another phone or computer connected to it?">
        <source>No Corvane seen. Is it on, charged and near? Is another phone or computer connected to it?</source>
        <translation>No Corvane seen. Is it on, charged and near? Is another phone or computer connected to it?</translation>
    </message>
    <message id="The connection to the Corvane was lost. The file on it is incomplete.">
        <source>The connection to the Corvane was lost. The file on it is incomplete.</source>
        <translation>The connection to the Corvane was lost. The file on it is incomplete.</translation>
    </message>
    <message id="%@ (incomplete)">
        <source>%@ (incomplete)</source>
        <translation>%@ (incomplete)</translation>
    </message>
    <message id="Fetch again">
        <source>Fetch again</source>
        <translation>Fetch again</translation>
    </message>
    <message id="Send again">
        <source>Send again</source>
        <translation>Send again</translation>
    </message>
    <message id="Emboss again">
        <source>Emboss again</source>
        <translation>Emboss again</translation>
    </message>
    <message id="Delete the incomplete file">
        <source>Delete the incomplete file</source>
        <translation>Delete the incomplete file</translation>
    </message>
    <message id="The incomplete file has been deleted from the Corvane.">
        <source>The incomplete file has been deleted from the Corvane.</source>
        <translation>The incomplete file has been deleted from the Corvane.</translation>
    </message>
</context>
</TS>
