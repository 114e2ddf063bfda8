<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>CsvActionDialog</name>
    <message>
        <source>CSV File Look-up</source>
        <translation>Suche in CSV-Datei</translation>
    </message>
    <message>
        <source>The button looks a number up in the CSV address book and shows what it finds.</source>
        <translation>Die Taste sucht eine Nummer im CSV-Adressbuch und zeigt, was sie findet.</translation>
    </message>
    <message>
        <source>&amp;Look up:</source>
        <translation>&amp;Suchen nach:</translation>
    </message>
    <message>
        <source>&amp;Show:</source>
        <translation>&amp;Anzeigen:</translation>
    </message>
    <message>
        <source>The caller&apos;s number</source>
        <translation>Die Nummer des Anrufers</translation>
    </message>
    <message>
        <source>The dialled number</source>
        <translation>Die gewählte Nummer</translation>
    </message>
    <message>
        <source>The contact&apos;s name</source>
        <translation>Den Namen des Kontakts</translation>
    </message>
    <message>
        <source>The contact&apos;s company</source>
        <translation>Die Firma des Kontakts</translation>
    </message>
    <message>
        <source>The name and the company</source>
        <translation>Namen und Firma</translation>
    </message>
</context>
<context>
    <name>CsvBookDialog</name>
    <message>
        <source>CSV File Address Book</source>
        <translation>Adressbuch aus CSV-Datei</translation>
    </message>
    <message>
        <source>&amp;File:</source>
        <translation>&amp;Datei:</translation>
    </message>
    <message>
        <source>The CSV file that holds the address book. Its first line names the columns.</source>
        <translation>Die CSV-Datei mit dem Adressbuch. Ihre erste Zeile benennt die Spalten.</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>Durch&amp;suchen...</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>&amp;Separated by:</source>
        <translation>&amp;Getrennt durch:</translation>
    </message>
    <message>
        <source>The character between the columns, found from the file&apos;s first line.</source>
        <translation>Das Zeichen zwischen den Spalten, ermittelt aus der ersten Zeile der Datei.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>The column that holds the contact&apos;s name.</source>
        <translation>Die Spalte mit dem Namen des Kontakts.</translation>
    </message>
    <message>
        <source>&amp;Company:</source>
        <translation>&amp;Firma:</translation>
    </message>
    <message>
        <source>The column that holds the contact&apos;s company.</source>
        <translation>Die Spalte mit der Firma des Kontakts.</translation>
    </message>
    <message>
        <source>N&amp;umber:</source>
        <translation>N&amp;ummer:</translation>
    </message>
    <message>
        <source>The column that holds the telephone number. A book needs one.</source>
        <translation>Die Spalte mit der Rufnummer. Ein Adressbuch braucht sie.</translation>
    </message>
    <message>
        <source>&amp;Preview of the first rows:</source>
        <translation>&amp;Vorschau der ersten Zeilen:</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Commas (,)</source>
        <translation>Kommas (,)</translation>
    </message>
    <message>
        <source>Semicolons (;)</source>
        <translation>Semikolons (;)</translation>
    </message>
    <message>
        <source>Tabs</source>
        <translation>Tabulatoren</translation>
    </message>
    <message>
        <source>Choose a CSV File</source>
        <translation>CSV-Datei auswählen</translation>
    </message>
    <message>
        <source>CSV files (*.csv *.txt);;All files (*)</source>
        <translation>CSV-Dateien (*.csv *.txt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Column %1</source>
        <translation>Spalte %1</translation>
    </message>
    <message>
        <source>(None)</source>
        <translation>(Keine)</translation>
    </message>
    <message>
        <source>Choose the column that holds the telephone numbers.</source>
        <translation>Wählen Sie die Spalte mit den Rufnummern.</translation>
    </message>
    <message>
        <source>The file %1 does not exist.</source>
        <translation>Die Datei %1 existiert nicht.</translation>
    </message>
    <message>
        <source>The file %1 is empty.</source>
        <translation>Die Datei %1 ist leer.</translation>
    </message>
    <message>
        <source>The file %1 is not a text file in UTF-8.</source>
        <translation>Die Datei %1 ist keine Textdatei in UTF-8.</translation>
    </message>
    <message>
        <source>The file %1 is too large (%2 MB). A CSV address book can be at most %3 MB.</source>
        <translation>Die Datei %1 ist zu groß (%2 MB). Ein CSV-Adressbuch darf höchstens %3 MB groß sein.</translation>
    </message>
    <message>
        <source>The file %1 could not be read.</source>
        <translation>Die Datei %1 konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The first line of %1 is too long to hold column titles.</source>
        <translation>Die erste Zeile von %1 ist zu lang für Spaltentitel.</translation>
    </message>
</context>
<context>
    <name>FolderBookDialog</name>
    <message>
        <source>Contacts Folder Address Book</source>
        <translation>Adressbuch aus Kontakteordner</translation>
    </message>
    <message>
        <source>Shared contacts &amp;folder:</source>
        <translation>Gemeinsamer &amp;Kontakteordner:</translation>
    </message>
    <message>
        <source>The folder every user&apos;s contacts are kept in, as the server reaches it.</source>
        <translation>Der Ordner, in dem die Kontakte aller Benutzer liegen, so wie der Server ihn erreicht.</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>Durch&amp;suchen...</translation>
    </message>
    <message>
        <source>Choose the Shared Contacts Folder</source>
        <translation>Gemeinsamen Kontakteordner auswählen</translation>
    </message>
    <message>
        <source>The folder %1 does not exist.</source>
        <translation>Der Ordner %1 existiert nicht.</translation>
    </message>
</context>
<context>
    <name>FolderUserDialog</name>
    <message>
        <source>Contacts Folder for the User</source>
        <translation>Kontakteordner des Benutzers</translation>
    </message>
    <message>
        <source>The user&apos;s &amp;contacts folder, inside the shared folder (empty for all of it):</source>
        <translation>&amp;Kontakteordner des Benutzers im gemeinsamen Ordner (leer für den ganzen Ordner):</translation>
    </message>
    <message>
        <source>Sales/Smith</source>
        <translation>Vertrieb/Schmidt</translation>
    </message>
    <message>
        <source>&amp;Include sub-folders</source>
        <translation>&amp;Unterordner einbeziehen</translation>
    </message>
    <message>
        <source>Enter a folder inside the shared contacts folder, such as Sales/Smith.</source>
        <translation>Geben Sie einen Ordner im gemeinsamen Kontakteordner ein, z. B. Vertrieb/Schmidt.</translation>
    </message>
</context>
</TS>
