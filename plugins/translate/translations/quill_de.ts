<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_GB">
<context>
    <name>QSConfig</name>
    <message>
        <source>Click this button to save the listed devices, or all of them, to a CSV file.</source>
        <translation>Klicken Sie auf diese Schaltfläche, um die angezeigten oder alle Geräte in einer CSV-Datei zu speichern.</translation>
    </message>
    <message>
        <source>Click this button to add or change devices from a CSV file; every change is shown before anything is sent.</source>
        <translation>Klicken Sie auf diese Schaltfläche, um Geräte aus einer CSV-Datei anzulegen oder zu ändern; jede Änderung wird angezeigt, bevor etwas gesendet wird.</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Konfiguration</translation>
    </message>
    <message>
        <source>&lt;1&gt; configuration</source>
        <translation>&lt;1&gt;-Konfiguration</translation>
    </message>
    <message>
        <source>QuillServer Configuration</source>
        <translation>QuillServer-Konfiguration</translation>
    </message>
    <message>
        <source>Halyard Configuration</source>
        <translation>Halyard-Konfiguration</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Verzeichnis</translation>
    </message>
    <message>
        <source>Site</source>
        <translation>Standort</translation>
    </message>
    <message>
        <source>Address Books</source>
        <translation>Adressbücher</translation>
    </message>
    <message>
        <source>Campaigns</source>
        <translation>Kampagnen</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>Funktionen</translation>
    </message>
    <message>
        <source>Routing</source>
        <translation>Routing</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>Scripts</source>
        <translation>Skripte</translation>
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
        <source>&amp;Tools</source>
        <translation>E&amp;xtras</translation>
    </message>
    <message>
        <source>Error log...</source>
        <translation>Fehlerprotokoll...</translation>
    </message>
    <message>
        <source>Enter a complete list of devices that are found on the PBX.  Trunks are not entered on all PBXs, please check installation notes before starting.</source>
        <translation>Erfassen Sie alle Geräte der Telefonanlage vollständig.  Amtsleitungen werden nicht bei allen Anlagen erfasst; lesen Sie vor Beginn die Installationshinweise.</translation>
    </message>
    <message>
        <source>Enter the site details, making sure the locality data is correct.  Select &apos;auto create devices&apos;, if available, to speed up installation.</source>
        <translation>Geben Sie die Standortdaten ein und achten Sie auf korrekte Ortsangaben.  Wählen Sie, falls verfügbar, „Geräte automatisch anlegen“, um die Installation zu beschleunigen.</translation>
    </message>
    <message>
        <source>Address Books allow searching of external telephone numbers.  Not all Address Books are available to all client software.</source>
        <translation>Adressbücher ermöglichen die Suche nach externen Rufnummern.  Nicht alle Adressbücher stehen jeder Client-Software zur Verfügung.</translation>
    </message>
    <message>
        <source>Add the campaigns to be used.  Campaigns are for use by the QuillCampaign client software.</source>
        <translation>Fügen Sie die zu verwendenden Kampagnen hinzu.  Kampagnen werden von der Client-Software QuillCampaign genutzt.</translation>
    </message>
    <message>
        <source>Enter the relevant feature codes above.  Please check installation notes for details.  Certain features are not available on some PBXs.</source>
        <translation>Geben Sie oben die zutreffenden Funktionscodes ein.  Einzelheiten finden Sie in den Installationshinweisen.  Manche Funktionen gibt es nicht bei allen Anlagen.</translation>
    </message>
    <message>
        <source>Routing allows certain types of calls to be automatically routed.  Not all types of routes are available on all PBXs.  Please see installation notes.</source>
        <translation>Mit Routing werden bestimmte Anrufarten automatisch weitergeleitet.  Nicht alle Routenarten sind bei allen Anlagen verfügbar.  Beachten Sie die Installationshinweise.</translation>
    </message>
    <message>
        <source>Enter the relevant information to allow daily reports and automatic client upgrades, etc.</source>
        <translation>Geben Sie die Angaben für tägliche Berichte, automatische Client-Aktualisierungen usw. ein.</translation>
    </message>
    <message>
        <source>Scripts are available to &lt;1&gt; clients. They are written in VB Script and run on the client machine.</source>
        <translation>Skripte stehen den Clients von &lt;1&gt; zur Verfügung. Sie sind in VBScript geschrieben und laufen auf dem Client-Rechner.</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Verbindungsaufbau</translation>
    </message>
    <message>
        <source>Logging in</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Reconnecting</source>
        <translation>Verbindung wird wiederhergestellt</translation>
    </message>
    <message>
        <source>Session closed</source>
        <translation>Sitzung beendet</translation>
    </message>
    <message>
        <source>This window is not available in this version.</source>
        <translation>Dieses Fenster ist in dieser Version nicht verfügbar.</translation>
    </message>
    <message>
        <source>Find a number, name or department</source>
        <translation>Nummer, Name oder Abteilung suchen</translation>
    </message>
    <message>
        <source>&amp;Add...</source>
        <translation>&amp;Hinzufügen...</translation>
    </message>
    <message>
        <source>&amp;Edit...</source>
        <translation>&amp;Bearbeiten...</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Ext</source>
        <translation>Nebenst.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Dept</source>
        <translation>Abt.</translation>
    </message>
    <message>
        <source>Extension</source>
        <translation>Nebenstelle</translation>
    </message>
    <message>
        <source>Agent</source>
        <translation>Agent</translation>
    </message>
    <message>
        <source>Speed dial</source>
        <translation>Kurzwahl</translation>
    </message>
    <message>
        <source>Trunk</source>
        <translation>Amtsleitung</translation>
    </message>
    <message>
        <source>It is recommended that you do not edit more than &lt;1&gt; extensions at a time.  Are you sure you wish to continue?</source>
        <translation>Es wird empfohlen, nicht mehr als &lt;1&gt; Nebenstellen gleichzeitig zu bearbeiten.  Möchten Sie trotzdem fortfahren?</translation>
    </message>
    <message>
        <source>Are you sure you want to remove the selected users?</source>
        <translation>Möchten Sie die ausgewählten Benutzer wirklich entfernen?</translation>
    </message>
    <message>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Move &amp;Down</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <source>&amp;Copy...</source>
        <translation>&amp;Kopieren...</translation>
    </message>
    <message>
        <source>Destination</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Address Book</source>
        <translation>Adressbuch</translation>
    </message>
    <message>
        <source>Campaign</source>
        <translation>Kampagne</translation>
    </message>
    <message>
        <source>Routing Condition</source>
        <translation>Routing-Bedingung</translation>
    </message>
    <message>
        <source>Script</source>
        <translation>Skript</translation>
    </message>
    <message>
        <source>Are you sure you want to remove this &lt;1&gt;?</source>
        <translation>Möchten Sie den ausgewählten Eintrag (&lt;1&gt;) wirklich entfernen?</translation>
    </message>
    <message>
        <source>Site details</source>
        <translation>Standortdaten</translation>
    </message>
    <message>
        <source>Site &amp;name:</source>
        <translation>Standort&amp;name:</translation>
    </message>
    <message>
        <source>&amp;Area code:</source>
        <translation>&amp;Vorwahl:</translation>
    </message>
    <message>
        <source>Trun&amp;k access code:</source>
        <translation>&amp;Amtskennziffer:</translation>
    </message>
    <message>
        <source>&amp;LCR codes:</source>
        <translation>&amp;LCR-Codes:</translation>
    </message>
    <message>
        <source>&amp;Operator:</source>
        <translation>&amp;Zentrale:</translation>
    </message>
    <message>
        <source>Voice mail</source>
        <translation>Voicemail</translation>
    </message>
    <message>
        <source>T&amp;ype:</source>
        <translation>T&amp;yp:</translation>
    </message>
    <message>
        <source>N&amp;umber:</source>
        <translation>N&amp;ummer:</translation>
    </message>
    <message>
        <source>IP a&amp;ddress:</source>
        <translation>IP-A&amp;dresse:</translation>
    </message>
    <message>
        <source>Telephone system</source>
        <translation>Telefonanlage</translation>
    </message>
    <message>
        <source>Ty&amp;pe:</source>
        <translation>Ty&amp;p:</translation>
    </message>
    <message>
        <source>&amp;Connection:</source>
        <translation>Verbindun&amp;g:</translation>
    </message>
    <message>
        <source>&amp;IP address:</source>
        <translation>&amp;IP-Adresse:</translation>
    </message>
    <message>
        <source>TCP po&amp;rt:</source>
        <translation>&amp;TCP-Port:</translation>
    </message>
    <message>
        <source>S&amp;erial settings:</source>
        <translation>&amp;Serielle Parameter:</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>S&amp;erver:</translation>
    </message>
    <message>
        <source>User na&amp;me:</source>
        <translation>&amp;Benutzername:</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>&amp;Kennwort:</translation>
    </message>
    <message>
        <source>&amp;Random call every (seconds):</source>
        <translation>Zu&amp;fallsanruf alle (Sekunden):</translation>
    </message>
    <message>
        <source>Num&amp;bers to call:</source>
        <translation>Anzu&amp;rufende Nummern:</translation>
    </message>
    <message>
        <source>Auto create de&amp;vices</source>
        <translation>Geräte aut&amp;omatisch anlegen</translation>
    </message>
    <message>
        <source>Demonstration mode</source>
        <translation>Demonstrationsmodus</translation>
    </message>
    <message>
        <source>Not used</source>
        <translation>Nicht verwendet</translation>
    </message>
    <message>
        <source>External Voice Mail</source>
        <translation>Externe Voicemail</translation>
    </message>
    <message>
        <source>Internal Voice Mail</source>
        <translation>Interne Voicemail</translation>
    </message>
    <message>
        <source>(None)</source>
        <translation>(Keine)</translation>
    </message>
    <message>
        <source>Feature</source>
        <translation>Funktion</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Pickup</source>
        <translation>Heranholen</translation>
    </message>
    <message>
        <source>Park</source>
        <translation>Parken</translation>
    </message>
    <message>
        <source>Call forward</source>
        <translation>Rufumleitung</translation>
    </message>
    <message>
        <source>Do not disturb</source>
        <translation>Nicht stören</translation>
    </message>
    <message>
        <source>Conference</source>
        <translation>Konferenz</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Weiterverbinden</translation>
    </message>
    <message>
        <source>Intrude</source>
        <translation>Aufschalten</translation>
    </message>
    <message>
        <source>Alerts</source>
        <translation>Warnmeldungen</translation>
    </message>
    <message>
        <source>&amp;Fatal warnings to:</source>
        <translation>&amp;Schwerwiegende Warnungen an:</translation>
    </message>
    <message>
        <source>&amp;Non fatal warnings to:</source>
        <translation>&amp;Nicht schwerwiegende Warnungen an:</translation>
    </message>
    <message>
        <source>&amp;Daily reports to:</source>
        <translation>&amp;Tägliche Berichte an:</translation>
    </message>
    <message>
        <source>Client updates</source>
        <translation>Client-Aktualisierungen</translation>
    </message>
    <message>
        <source>Send QuillPhone &amp;updates automatically</source>
        <translation>QuillPhone-&amp;Aktualisierungen automatisch verteilen</translation>
    </message>
    <message>
        <source>Update &amp;path:</source>
        <translation>Aktualisierungs&amp;pfad:</translation>
    </message>
    <message>
        <source>Remote servers</source>
        <translation>Entfernte Server</translation>
    </message>
    <message>
        <source>&amp;Servers:</source>
        <translation>Se&amp;rver:</translation>
    </message>
    <message>
        <source>Extension Properties</source>
        <translation>Eigenschaften: Nebenstelle</translation>
    </message>
    <message>
        <source>&lt;1&gt; Properties: &lt;2&gt;</source>
        <translation>Eigenschaften: &lt;1&gt; &lt;2&gt;</translation>
    </message>
    <message>
        <source>&lt;1&gt; Properties: (&lt;2&gt;)</source>
        <translation>Eigenschaften: &lt;1&gt; (&lt;2&gt;)</translation>
    </message>
    <message>
        <source>Entry</source>
        <translation>Eintrag</translation>
    </message>
    <message>
        <source>entry</source>
        <translation>Eintrag</translation>
    </message>
    <message>
        <source>entries</source>
        <translation>Einträge</translation>
    </message>
    <message>
        <source>extension</source>
        <translation>Nebenstelle</translation>
    </message>
    <message>
        <source>extensions</source>
        <translation>Nebenstellen</translation>
    </message>
    <message>
        <source>&amp;Type:</source>
        <translation>&amp;Typ:</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Erweitert</translation>
    </message>
    <message>
        <source>Buttons</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Notizen</translation>
    </message>
    <message>
        <source>&amp;Department:</source>
        <translation>&amp;Abteilung:</translation>
    </message>
    <message>
        <source>&amp;DDI:</source>
        <translation>&amp;Durchwahl:</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Kennwort:</translation>
    </message>
    <message>
        <source>&amp;Assistant:</source>
        <translation>A&amp;ssistent:</translation>
    </message>
    <message>
        <source>&amp;Mobile:</source>
        <translation>&amp;Mobilnummer:</translation>
    </message>
    <message>
        <source>&amp;Use the absence text:</source>
        <translation>Abwesenheitstext &amp;verwenden:</translation>
    </message>
    <message>
        <source>Disable monitoring</source>
        <translation>Nicht überwachen</translation>
    </message>
    <message>
        <source>Ignore for missed calls</source>
        <translation>Bei verpassten Anrufen ignorieren</translation>
    </message>
    <message>
        <source>Can dial</source>
        <translation>Darf wählen</translation>
    </message>
    <message>
        <source>View call log</source>
        <translation>Anrufliste anzeigen</translation>
    </message>
    <message>
        <source>View others&apos; call logs</source>
        <translation>Anruflisten anderer anzeigen</translation>
    </message>
    <message>
        <source>View address book</source>
        <translation>Adressbuch anzeigen</translation>
    </message>
    <message>
        <source>Edit own details</source>
        <translation>Eigene Angaben bearbeiten</translation>
    </message>
    <message>
        <source>Exclude from status screen</source>
        <translation>Nicht in der Statusanzeige</translation>
    </message>
    <message>
        <source>Main number</source>
        <translation>Hauptnummer</translation>
    </message>
    <message>
        <source>Edit address book</source>
        <translation>Adressbuch bearbeiten</translation>
    </message>
    <message>
        <source>Show all departments</source>
        <translation>Alle Abteilungen anzeigen</translation>
    </message>
    <message>
        <source>Configure own buttons</source>
        <translation>Eigene Tasten einrichten</translation>
    </message>
    <message>
        <source>Use extension status window</source>
        <translation>Statusfenster verwenden</translation>
    </message>
    <message>
        <source>Pick up ringing calls</source>
        <translation>Klingelnde Anrufe heranholen</translation>
    </message>
    <message>
        <source>View &apos;To do&apos; list</source>
        <translation>Aufgabenliste anzeigen</translation>
    </message>
    <message>
        <source>View features menu</source>
        <translation>Funktionsmenü anzeigen</translation>
    </message>
    <message>
        <source>Set callbacks</source>
        <translation>Rückrufe setzen</translation>
    </message>
    <message>
        <source>Reroute to external numbers</source>
        <translation>Auf externe Nummern umleiten</translation>
    </message>
    <message>
        <source>Keep call details private</source>
        <translation>Anrufdaten vertraulich</translation>
    </message>
    <message>
        <source>Administrator</source>
        <translation>Administrator</translation>
    </message>
    <message>
        <source>Use the telephone system&apos;s name</source>
        <translation>Namen der Telefonanlage verwenden</translation>
    </message>
    <message>
        <source>Requires a logged-in agent</source>
        <translation>Angemeldeter Agent nötig</translation>
    </message>
    <message>
        <source>Include on status screen</source>
        <translation>In der Statusanzeige zeigen</translation>
    </message>
    <message>
        <source>No extension number was entered.  The extension number is a mandatory value.</source>
        <translation>Es wurde keine Nebenstellennummer eingegeben.  Die Nebenstellennummer ist eine Pflichtangabe.</translation>
    </message>
    <message>
        <source>Saving &lt;1&gt; of &lt;2&gt;...</source>
        <translation>Speichern: &lt;1&gt; von &lt;2&gt;...</translation>
    </message>
    <message>
        <source>No buttons</source>
        <translation>Keine Tasten</translation>
    </message>
    <message>
        <source>&lt;1&gt; buttons</source>
        <translation>&lt;1&gt; Tasten</translation>
    </message>
    <message>
        <source>&amp;Buttons shown:</source>
        <translation>An&amp;gezeigte Tasten:</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Button &lt;1&gt;</source>
        <translation>Taste &lt;1&gt;</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Button</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>Definition</source>
        <translation>Belegung</translation>
    </message>
    <message>
        <source>Event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>New Call</source>
        <translation>Neuer Anruf</translation>
    </message>
    <message>
        <source>Answer Call</source>
        <translation>Anruf angenommen</translation>
    </message>
    <message>
        <source>Call State</source>
        <translation>Anrufstatus</translation>
    </message>
    <message>
        <source>Delete Call</source>
        <translation>Anruf gelöscht</translation>
    </message>
    <message>
        <source>Hookstate Change</source>
        <translation>Hörerstatus geändert</translation>
    </message>
    <message>
        <source>Value Change</source>
        <translation>Wert geändert</translation>
    </message>
    <message>
        <source>Shutdown</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>(Directory)</source>
        <translation>(Verzeichnis)</translation>
    </message>
    <message>
        <source>&amp;New contacts go to:</source>
        <translation>Neue Kontakte speichern &amp;in:</translation>
    </message>
    <message>
        <source>&amp;Configure...</source>
        <translation>Konfigu&amp;rieren...</translation>
    </message>
    <message>
        <source>Public</source>
        <translation>Öffentlich</translation>
    </message>
    <message>
        <source>Private</source>
        <translation>Privat</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>erledigt</translation>
    </message>
    <message>
        <source>No user configuration available for &apos;&lt;1&gt;&apos;.</source>
        <translation>Für „&lt;1&gt;“ gibt es keine Benutzereinstellungen.</translation>
    </message>
    <message>
        <source>Edit Button</source>
        <translation>Taste bearbeiten</translation>
    </message>
    <message>
        <source>Edit Event</source>
        <translation>Ereignis bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Action:</source>
        <translation>&amp;Aktion:</translation>
    </message>
    <message>
        <source>&amp;Caption:</source>
        <translation>&amp;Beschriftung:</translation>
    </message>
    <message>
        <source>E&amp;xtension:</source>
        <translation>&amp;Nebenstelle:</translation>
    </message>
    <message>
        <source>&amp;Result:</source>
        <translation>&amp;Ergebnis:</translation>
    </message>
    <message>
        <source>Call &amp;types:</source>
        <translation>Anruf&amp;typen:</translation>
    </message>
    <message>
        <source>&amp;Number:</source>
        <translation>&amp;Rufnummer:</translation>
    </message>
    <message>
        <source>&amp;Script:</source>
        <translation>&amp;Skript:</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>&amp;Konfiguration:</translation>
    </message>
    <message>
        <source>C&amp;onfigure...</source>
        <translation>K&amp;onfigurieren...</translation>
    </message>
    <message>
        <source>(Script)</source>
        <translation>(Skript)</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Annehmen</translation>
    </message>
    <message>
        <source>Answer/Hangup</source>
        <translation>Annehmen/Auflegen</translation>
    </message>
    <message>
        <source>Deflect Call</source>
        <translation>Anruf umleiten</translation>
    </message>
    <message>
        <source>Dial Clipboard</source>
        <translation>Zwischenablage wählen</translation>
    </message>
    <message>
        <source>Hangup</source>
        <translation>Auflegen</translation>
    </message>
    <message>
        <source>Hold/Unhold</source>
        <translation>Halten/Zurückholen</translation>
    </message>
    <message>
        <source>Reconnect</source>
        <translation>Zurückverbinden</translation>
    </message>
    <message>
        <source>Set Callback</source>
        <translation>Rückruf setzen</translation>
    </message>
    <message>
        <source>Set Result</source>
        <translation>Ergebnis setzen</translation>
    </message>
    <message>
        <source>Show Address Book</source>
        <translation>Adressbuch anzeigen</translation>
    </message>
    <message>
        <source>Show Call History</source>
        <translation>Anrufverlauf anzeigen</translation>
    </message>
    <message>
        <source>Show Contact</source>
        <translation>Kontakt anzeigen</translation>
    </message>
    <message>
        <source>Show Extensions</source>
        <translation>Nebenstellen anzeigen</translation>
    </message>
    <message>
        <source>Show Phone</source>
        <translation>Telefon anzeigen</translation>
    </message>
    <message>
        <source>Show Todo</source>
        <translation>Aufgaben anzeigen</translation>
    </message>
    <message>
        <source>Speed Dial</source>
        <translation>Kurzwahl</translation>
    </message>
    <message>
        <source>&amp;Caller tel:</source>
        <translation>&amp;Anrufer-Nr.:</translation>
    </message>
    <message>
        <source>Called &amp;tel:</source>
        <translation>An&amp;gerufene Nr.:</translation>
    </message>
    <message>
        <source>&amp;Ringing ext:</source>
        <translation>&amp;Klingelnde Nebenst.:</translation>
    </message>
    <message>
        <source>&amp;Address Book:</source>
        <translation>A&amp;dressbuch:</translation>
    </message>
    <message>
        <source>Da&amp;y:</source>
        <translation>&amp;Tag:</translation>
    </message>
    <message>
        <source>&amp;Date:</source>
        <translation>Dat&amp;um:</translation>
    </message>
    <message>
        <source>&amp;Time:</source>
        <translation>Uhr&amp;zeit:</translation>
    </message>
    <message>
        <source>De&amp;stination:</source>
        <translation>Z&amp;iel:</translation>
    </message>
    <message>
        <source>Monday</source>
        <translation>Montag</translation>
    </message>
    <message>
        <source>Tuesday</source>
        <translation>Dienstag</translation>
    </message>
    <message>
        <source>Wednesday</source>
        <translation>Mittwoch</translation>
    </message>
    <message>
        <source>Thursday</source>
        <translation>Donnerstag</translation>
    </message>
    <message>
        <source>Friday</source>
        <translation>Freitag</translation>
    </message>
    <message>
        <source>Saturday</source>
        <translation>Samstag</translation>
    </message>
    <message>
        <source>Sunday</source>
        <translation>Sonntag</translation>
    </message>
    <message>
        <source>Weekdays only</source>
        <translation>Nur werktags</translation>
    </message>
    <message>
        <source>Weekends only</source>
        <translation>Nur am Wochenende</translation>
    </message>
    <message>
        <source>&amp;Main function:</source>
        <translation>&amp;Hauptfunktion:</translation>
    </message>
    <message>
        <source>&amp;Parameters:</source>
        <translation>&amp;Parameter:</translation>
    </message>
    <message>
        <source>&amp;Script</source>
        <translation>&amp;Skript</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Enter or F3: find next. Shift+F3: find previous. Esc: close.</source>
        <translation>Eingabe oder F3: weitersuchen. Umschalt+F3: rückwärts suchen. Esc: schließen.</translation>
    </message>
    <message>
        <source>Public Address Book</source>
        <translation>Öffentliches Adressbuch</translation>
    </message>
    <message>
        <source>Private Address Book</source>
        <translation>Privates Adressbuch</translation>
    </message>
    <message>
        <source>&amp;Configure</source>
        <translation>&amp;Konfigurieren</translation>
    </message>
    <message>
        <source>&amp;Source:</source>
        <translation>&amp;Quelle:</translation>
    </message>
    <message>
        <source>&amp;Alpha directory:</source>
        <translation>&amp;Alphabetischer Index:</translation>
    </message>
    <message>
        <source>N&amp;otes:</source>
        <translation>N&amp;otizen:</translation>
    </message>
    <message>
        <source>Use contact name</source>
        <translation>Kontaktname verwenden</translation>
    </message>
    <message>
        <source>Use company name</source>
        <translation>Firmenname verwenden</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisierung</translation>
    </message>
    <message>
        <source>&amp;Use data live</source>
        <translation>Daten &amp;live verwenden</translation>
    </message>
    <message>
        <source>&amp;Disconnect between</source>
        <translation>Verbindung t&amp;rennen zwischen</translation>
    </message>
    <message>
        <source>&amp;and</source>
        <translation>&amp;und</translation>
    </message>
    <message>
        <source>&amp;Allow new entries</source>
        <translation>Neue Einträge &amp;zulassen</translation>
    </message>
    <message>
        <source>&amp;Cache data</source>
        <translation>Daten im &amp;Cache halten</translation>
    </message>
    <message>
        <source>&amp;Refresh cache at</source>
        <translation>Cache aktualisieren u&amp;m</translation>
    </message>
    <message>
        <source>Refresh cache &amp;every</source>
        <translation>Cache aktualisieren all&amp;e</translation>
    </message>
    <message>
        <source>hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <source>Refresh &amp;now</source>
        <translation>&amp;Jetzt aktualisieren</translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>Statistik</translation>
    </message>
    <message>
        <source>Hit rate:</source>
        <translation>Trefferquote:</translation>
    </message>
    <message>
        <source>Last 5 searches</source>
        <translation>Letzte 5 Suchen</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Speed (s)</source>
        <translation>Dauer (s)</translation>
    </message>
    <message>
        <source>Average speed:</source>
        <translation>Mittlere Dauer:</translation>
    </message>
    <message>
        <source>Could not configure &apos;&lt;1&gt;&apos;. Please ensure the &apos;&lt;2&gt;&apos; plugin is installed on this machine.</source>
        <translation>„&lt;1&gt;“ konnte nicht konfiguriert werden. Bitte stellen Sie sicher, dass das Plug-in „&lt;2&gt;“ auf diesem Rechner installiert ist.</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Error Messages</source>
        <translation>Fehlermeldungen</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>&amp;Retry</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Change server...</source>
        <translation>&amp;Server ändern...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Connecting to &lt;1&gt;...</source>
        <translation>Verbindung mit &lt;1&gt; wird hergestellt...</translation>
    </message>
    <message>
        <source>Could not connect to &lt;1&gt;.</source>
        <translation>Keine Verbindung mit &lt;1&gt; möglich.</translation>
    </message>
    <message>
        <source>The server does not answer. Keep trying to connect?</source>
        <translation>Der Server antwortet nicht. Weiter versuchen, eine Verbindung herzustellen?</translation>
    </message>
    <message>
        <source>The server does not answer (&lt;1&gt;). Keep trying to connect?</source>
        <translation>Der Server antwortet nicht (&lt;1&gt;). Weiter versuchen, eine Verbindung herzustellen?</translation>
    </message>
    <message>
        <source>The demonstration server could not be started: &lt;1&gt;</source>
        <translation>Der Demonstrationsserver konnte nicht gestartet werden: &lt;1&gt;</translation>
    </message>
    <message>
        <source>Log in to the server</source>
        <translation>Am Server anmelden</translation>
    </message>
    <message>
        <source>ws://host:port</source>
        <translation>ws://Host:Port</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>&amp;Benutzer:</translation>
    </message>
    <message>
        <source>Enter the user name and password.</source>
        <translation>Geben Sie Benutzername und Kennwort ein.</translation>
    </message>
    <message>
        <source>Enter the server address as ws://host:port or wss://host:port.</source>
        <translation>Geben Sie die Serveradresse als ws://Host:Port oder wss://Host:Port ein.</translation>
    </message>
    <message>
        <source>The server did not answer in time.</source>
        <translation>Der Server hat nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>Log-in cancelled</source>
        <translation>Anmeldung abgebrochen</translation>
    </message>
    <message>
        <source>Unknown user or wrong password</source>
        <translation>Unbekannter Benutzer oder falsches Kennwort</translation>
    </message>
    <message>
        <source>The log-in token is not valid</source>
        <translation>Das Anmelde-Token ist ungültig</translation>
    </message>
    <message>
        <source>Too many log-ins at once; try again shortly</source>
        <translation>Zu viele gleichzeitige Anmeldungen; versuchen Sie es gleich noch einmal</translation>
    </message>
    <message>
        <source>Campaign Properties</source>
        <translation>Eigenschaften: Kampagne</translation>
    </message>
    <message>
        <source>&amp;Campaign name:</source>
        <translation>&amp;Kampagnenname:</translation>
    </message>
    <message>
        <source>Ta&amp;ble/query:</source>
        <translation>&amp;Tabelle/Abfrage:</translation>
    </message>
    <message>
        <source>No &amp;answer timeout:</source>
        <translation>&amp;Wartezeit ohne Antwort:</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>Contact Details</source>
        <translation>Kontaktdetails</translation>
    </message>
    <message>
        <source>&amp;Id:</source>
        <translation>&amp;ID:</translation>
    </message>
    <message>
        <source>&amp;Telephone:</source>
        <translation>&amp;Telefon:</translation>
    </message>
    <message>
        <source>&amp;Notes:</source>
        <translation>N&amp;otizen:</translation>
    </message>
    <message>
        <source>Sho&amp;w sample</source>
        <translation>&amp;Beispiel anzeigen</translation>
    </message>
    <message>
        <source>Menus</source>
        <translation>Menüs</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Properties</source>
        <translation>Ei&amp;genschaften</translation>
    </message>
    <message>
        <source>Reading &lt;1&gt;...</source>
        <translation>&lt;1&gt; wird gelesen...</translation>
    </message>
    <message>
        <source>The database &lt;1&gt; cannot be read: &lt;2&gt;</source>
        <translation>Die Datenbank &lt;1&gt; kann nicht gelesen werden: &lt;2&gt;</translation>
    </message>
    <message>
        <source>The columns of &lt;1&gt; cannot be read: &lt;2&gt;</source>
        <translation>Die Spalten von &lt;1&gt; können nicht gelesen werden: &lt;2&gt;</translation>
    </message>
    <message>
        <source>&lt;New campaign&gt;</source>
        <translation>&lt;Neue Kampagne&gt;</translation>
    </message>
    <message>
        <source>Select Database (.mdb)</source>
        <translation>Datenbank auswählen (.mdb)</translation>
    </message>
    <message>
        <source>Database files (*.mdb)</source>
        <translation>Datenbankdateien (*.mdb)</translation>
    </message>
    <message>
        <source>Choice Properties</source>
        <translation>Eigenschaften: Auswahl</translation>
    </message>
    <message>
        <source>&amp;Destination:</source>
        <translation>&amp;Ziel:</translation>
    </message>
    <message>
        <source>&amp;Delay:</source>
        <translation>&amp;Verzögerung:</translation>
    </message>
    <message>
        <source>C&amp;olor:</source>
        <translation>&amp;Farbe:</translation>
    </message>
    <message>
        <source>Ta&amp;g:</source>
        <translation>&amp;Kennung:</translation>
    </message>
    <message>
        <source>&amp;HTML file:</source>
        <translation>&amp;HTML-Datei:</translation>
    </message>
    <message>
        <source>HTML Preview</source>
        <translation>HTML-Vorschau</translation>
    </message>
    <message>
        <source>&lt;New Choice&gt;</source>
        <translation>&lt;Neue Auswahl&gt;</translation>
    </message>
    <message>
        <source>&lt;New Result&gt;</source>
        <translation>&lt;Neues Ergebnis&gt;</translation>
    </message>
    <message>
        <source>Select HTML file</source>
        <translation>HTML-Datei auswählen</translation>
    </message>
    <message>
        <source>HTML files</source>
        <translation>HTML-Dateien</translation>
    </message>
    <message>
        <source>The page is too big to preview.</source>
        <translation>Die Seite ist für die Vorschau zu groß.</translation>
    </message>
    <message>
        <source>Initial script</source>
        <translation>Startskript</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>Exportieren...</translation>
    </message>
    <message>
        <source>Import...</source>
        <translation>Importieren...</translation>
    </message>
    <message>
        <source>Export Devices</source>
        <translation>Geräte exportieren</translation>
    </message>
    <message>
        <source>&amp;Fields to write:</source>
        <translation>Zu schreibende &amp;Felder:</translation>
    </message>
    <message>
        <source>The file will hold the devices&apos; passwords as plain text: keep it where only administrators can read it.</source>
        <translation>Die Datei enthält die Kennwörter der Geräte im Klartext: Bewahren Sie sie so auf, dass nur Administratoren sie lesen können.</translation>
    </message>
    <message>
        <source>Devices</source>
        <translation>Geräte</translation>
    </message>
    <message>
        <source>Only the listed devices</source>
        <translation>Nur die aufgeführten Geräte</translation>
    </message>
    <message>
        <source>All devices</source>
        <translation>Alle Geräte</translation>
    </message>
    <message>
        <source>&amp;Export...</source>
        <translation>&amp;Exportieren...</translation>
    </message>
    <message>
        <source>Only the &lt;1&gt; devices listed on the page</source>
        <translation>Nur die &lt;1&gt; auf der Seite aufgeführten Geräte</translation>
    </message>
    <message>
        <source>&lt;1&gt; (holds passwords)</source>
        <translation>&lt;1&gt; (enthält Kennwörter)</translation>
    </message>
    <message>
        <source>CSV files (*.csv)</source>
        <translation>CSV-Dateien (*.csv)</translation>
    </message>
    <message>
        <source>The file &quot;&lt;1&gt;&quot; cannot be written: &lt;2&gt;</source>
        <translation>Die Datei „&lt;1&gt;“ kann nicht geschrieben werden: &lt;2&gt;</translation>
    </message>
    <message>
        <source>Reading the devices from the server...</source>
        <translation>Die Geräte werden vom Server gelesen...</translation>
    </message>
    <message>
        <source>Cancelled: no file was written.</source>
        <translation>Abgebrochen: Es wurde keine Datei geschrieben.</translation>
    </message>
    <message>
        <source>No file was written.</source>
        <translation>Es wurde keine Datei geschrieben.</translation>
    </message>
    <message>
        <source>&lt;1&gt; written to &quot;&lt;2&gt;&quot;.</source>
        <translation>&lt;1&gt; in „&lt;2&gt;“ geschrieben.</translation>
    </message>
    <message>
        <source>device</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>devices</source>
        <translation>Geräte</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Import Devices</source>
        <translation>Geräte importieren</translation>
    </message>
    <message>
        <source>File:</source>
        <translation>Datei:</translation>
    </message>
    <message>
        <source>&amp;Choose...</source>
        <translation>&amp;Auswählen...</translation>
    </message>
    <message>
        <source>&amp;Show:</source>
        <translation>&amp;Anzeigen:</translation>
    </message>
    <message>
        <source>Findings in the file:</source>
        <translation>Befunde in der Datei:</translation>
    </message>
    <message>
        <source>Import the other rows and leave out the rejected ones</source>
        <translation>Die übrigen Zeilen importieren und die abgelehnten auslassen</translation>
    </message>
    <message>
        <source>&amp;Import</source>
        <translation>&amp;Importieren</translation>
    </message>
    <message>
        <source>All rows</source>
        <translation>Alle Zeilen</translation>
    </message>
    <message>
        <source>New devices</source>
        <translation>Neue Geräte</translation>
    </message>
    <message>
        <source>Changed devices</source>
        <translation>Geänderte Geräte</translation>
    </message>
    <message>
        <source>Rejected rows</source>
        <translation>Abgelehnte Zeilen</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Choose a CSV file of devices: its first row names the fields.</source>
        <translation>Wählen Sie eine CSV-Datei mit Geräten: Ihre erste Zeile nennt die Felder.</translation>
    </message>
    <message>
        <source>Nothing was sent.</source>
        <translation>Es wurde nichts gesendet.</translation>
    </message>
    <message>
        <source>Nothing to import: every row is unchanged or rejected.</source>
        <translation>Nichts zu importieren: Jede Zeile ist unverändert oder abgelehnt.</translation>
    </message>
    <message>
        <source>Nothing is sent before you press Import. Rejected rows are never sent; tick the box above to import the other rows without them.</source>
        <translation>Erst „Importieren“ sendet etwas. Abgelehnte Zeilen werden nie gesendet; kreuzen Sie das Feld oben an, um die übrigen Zeilen ohne sie zu importieren.</translation>
    </message>
    <message>
        <source>Nothing is sent before you press Import.</source>
        <translation>Erst „Importieren“ sendet etwas.</translation>
    </message>
    <message>
        <source>Sending: &lt;1&gt;...</source>
        <translation>Senden: &lt;1&gt;...</translation>
    </message>
    <message>
        <source>row</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>Cancelling: waiting for the server to confirm the rows already sent...</source>
        <translation>Abbrechen: Warten, bis der Server die schon gesendeten Zeilen bestätigt...</translation>
    </message>
    <message>
        <source>Warning: &lt;1&gt;</source>
        <translation>Warnung: &lt;1&gt;</translation>
    </message>
    <message>
        <source>Error: &lt;1&gt;</source>
        <translation>Fehler: &lt;1&gt;</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Aktion</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>&lt;1&gt; new, &lt;2&gt; changed</source>
        <translation>&lt;1&gt; neu, &lt;2&gt; geändert</translation>
    </message>
    <message>
        <source>&lt;1&gt; unchanged, &lt;2&gt; rejected</source>
        <translation>&lt;1&gt; unverändert, &lt;2&gt; abgelehnt</translation>
    </message>
    <message>
        <source>&lt;1&gt;: changed</source>
        <translation>&lt;1&gt;: geändert</translation>
    </message>
    <message>
        <source>(empty)</source>
        <translation>(leer)</translation>
    </message>
    <message>
        <source>new</source>
        <translation>neu</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>geändert</translation>
    </message>
    <message>
        <source>unchanged</source>
        <translation>unverändert</translation>
    </message>
    <message>
        <source>rejected</source>
        <translation>abgelehnt</translation>
    </message>
    <message>
        <source>The file &quot;&lt;1&gt;&quot; does not exist.</source>
        <translation>Die Datei „&lt;1&gt;“ gibt es nicht.</translation>
    </message>
    <message>
        <source>The file &quot;&lt;1&gt;&quot; could not be read.</source>
        <translation>Die Datei „&lt;1&gt;“ konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The file &quot;&lt;1&gt;&quot; is empty.</source>
        <translation>Die Datei „&lt;1&gt;“ ist leer.</translation>
    </message>
    <message>
        <source>The file &quot;&lt;1&gt;&quot; is not UTF-8 text. Save it from the spreadsheet as &quot;CSV UTF-8&quot;.</source>
        <translation>Die Datei „&lt;1&gt;“ ist kein UTF-8-Text. Speichern Sie sie in der Tabellenkalkulation als „CSV UTF-8“.</translation>
    </message>
    <message>
        <source>The file &quot;&lt;1&gt;&quot; is larger than &lt;2&gt; MB.</source>
        <translation>Die Datei „&lt;1&gt;“ ist größer als &lt;2&gt; MB.</translation>
    </message>
    <message>
        <source>The file holds no title row.</source>
        <translation>Die Datei enthält keine Titelzeile.</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: the column &lt;2&gt; is named twice.</source>
        <translation>Zeile &lt;1&gt;: Die Spalte &lt;2&gt; ist zweimal genannt.</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: &lt;2&gt; is not a device field.</source>
        <translation>Zeile &lt;1&gt;: &lt;2&gt; ist kein Gerätefeld.</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: the title row has no Ext column; every device needs its number.</source>
        <translation>Zeile &lt;1&gt;: Die Titelzeile hat keine Spalte Ext; jedes Gerät braucht seine Nummer.</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: &lt;2&gt;.</source>
        <translation>Zeile &lt;1&gt;: &lt;2&gt;.</translation>
    </message>
    <message>
        <source>&lt;1&gt; fields where the title row names &lt;2&gt;</source>
        <translation>&lt;1&gt; Felder, wo die Titelzeile &lt;2&gt; nennt</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: no Ext.</source>
        <translation>Zeile &lt;1&gt;: Ext fehlt.</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: Ext &lt;2&gt; is a range; give each device a line of its own.</source>
        <translation>Zeile &lt;1&gt;: Ext &lt;2&gt; ist ein Bereich; geben Sie jedem Gerät eine eigene Zeile.</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: Ext is cut to 15 characters: &lt;2&gt;.</source>
        <translation>Zeile &lt;1&gt;: Ext wird auf 15 Zeichen gekürzt: &lt;2&gt;.</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: Type &lt;2&gt; is not one of EXT, AGENT, SPEED or TRUNK.</source>
        <translation>Zeile &lt;1&gt;: Type &lt;2&gt; ist weder EXT noch AGENT, SPEED oder TRUNK.</translation>
    </message>
    <message>
        <source>&lt;1&gt; is 0 or 1, not &quot;&lt;2&gt;&quot;</source>
        <translation>&lt;1&gt; ist 0 oder 1, nicht „&lt;2&gt;“</translation>
    </message>
    <message>
        <source>&lt;1&gt; is cut to &lt;2&gt; characters</source>
        <translation>&lt;1&gt; wird auf &lt;2&gt; Zeichen gekürzt</translation>
    </message>
    <message>
        <source>&lt;1&gt; is not kept for the kind &lt;2&gt;; it is left out</source>
        <translation>&lt;1&gt; wird beim Typ &lt;2&gt; nicht gespeichert und daher ausgelassen</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: Ext &lt;2&gt; is on an earlier line as well.</source>
        <translation>Zeile &lt;1&gt;: Ext &lt;2&gt; steht auch in einer früheren Zeile.</translation>
    </message>
    <message>
        <source>Line &lt;1&gt;: Ext &lt;2&gt; is on a later line as well.</source>
        <translation>Zeile &lt;1&gt;: Ext &lt;2&gt; steht auch in einer späteren Zeile.</translation>
    </message>
    <message>
        <source>logged out</source>
        <translation>abgemeldet</translation>
    </message>
    <message>
        <source>the connection to the server was lost</source>
        <translation>die Verbindung zum Server ist abgebrochen</translation>
    </message>
    <message>
        <source>The server did not answer the read of the devices in time.</source>
        <translation>Der Server hat auf das Lesen der Geräte nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>The devices could not be read: &lt;1&gt;.</source>
        <translation>Die Geräte konnten nicht gelesen werden: &lt;1&gt;.</translation>
    </message>
    <message>
        <source>The devices could not be read: there is no connection to the server.</source>
        <translation>Die Geräte konnten nicht gelesen werden: Es besteht keine Verbindung zum Server.</translation>
    </message>
    <message>
        <source>the server did not confirm the writes in time</source>
        <translation>der Server hat das Schreiben nicht rechtzeitig bestätigt</translation>
    </message>
    <message>
        <source>there is no connection to the server</source>
        <translation>es besteht keine Verbindung zum Server</translation>
    </message>
    <message>
        <source>All &lt;1&gt; rows were written.</source>
        <translation>Alle &lt;1&gt; Zeilen wurden geschrieben.</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>The import stopped: &lt;1&gt;.</source>
        <translation>Der Import wurde angehalten: &lt;1&gt;.</translation>
    </message>
    <message>
        <source>The row was written.</source>
        <translation>Die Zeile wurde geschrieben.</translation>
    </message>
    <message>
        <source>No row was written.</source>
        <translation>Keine Zeile wurde geschrieben.</translation>
    </message>
    <message>
        <source>Written: lines &lt;1&gt;.</source>
        <translation>Geschrieben: Zeilen &lt;1&gt;.</translation>
    </message>
    <message>
        <source>Sent but not confirmed (they may or may not be stored): lines &lt;1&gt;.</source>
        <translation>Gesendet, aber nicht bestätigt (vielleicht gespeichert, vielleicht nicht): Zeilen &lt;1&gt;.</translation>
    </message>
    <message>
        <source>Not written: lines &lt;1&gt;.</source>
        <translation>Nicht geschrieben: Zeilen &lt;1&gt;.</translation>
    </message>
    <message>
        <source>Run the same import again to finish: rows already stored then show as unchanged.</source>
        <translation>Starten Sie denselben Import noch einmal, um ihn abzuschließen: Schon gespeicherte Zeilen erscheinen dann als unverändert.</translation>
    </message>
    <message>
        <source>Tick &amp;all</source>
        <translation>&amp;Alle ankreuzen</translation>
    </message>
    <message>
        <source>Tick &amp;none</source>
        <translation>&amp;Keine ankreuzen</translation>
    </message>
</context>
<context>
    <name>QSConfigKeys</name>
    <message>
        <source>QS001</source>
        <extracomment>Select Auto create for &lt;1&gt; to &apos;learn&apos; your extension numbers.</extracomment>
        <translation>Aktivieren Sie „Geräte automatisch anlegen“, damit die Nebenstellennummern der Anlage &lt;1&gt; „gelernt“ werden.</translation>
    </message>
    <message>
        <source>QS002</source>
        <extracomment>Lists Campaigns &lt;1&gt; has been configured to use.</extracomment>
        <translation>Liste der Kampagnen, für die &lt;1&gt; eingerichtet ist.</translation>
    </message>
    <message>
        <source>QS003</source>
        <extracomment>List of public Address Books &lt;1&gt; has been configured to use.</extracomment>
        <translation>Liste der öffentlichen Adressbücher, für die &lt;1&gt; eingerichtet ist.</translation>
    </message>
    <message>
        <source>QS004</source>
        <extracomment>Enter the extension number of the users to send fatal warnings to.</extracomment>
        <translation>Geben Sie die Nebenstellennummern der Benutzer ein, die schwerwiegende Warnungen erhalten.</translation>
    </message>
    <message>
        <source>QS005</source>
        <extracomment>Enter the extension number of the users to send non fatal warnings to.</extracomment>
        <translation>Geben Sie die Nebenstellennummern der Benutzer ein, die nicht schwerwiegende Warnungen erhalten.</translation>
    </message>
    <message>
        <source>QS006</source>
        <extracomment>Enter the extension number of the users to send daily reports to.</extracomment>
        <translation>Geben Sie die Nebenstellennummern der Benutzer ein, die tägliche Berichte erhalten.</translation>
    </message>
    <message>
        <source>QS007</source>
        <extracomment>Enter the IP address of your telephone system.</extracomment>
        <translation>Geben Sie die IP-Adresse Ihrer Telefonanlage ein.</translation>
    </message>
    <message>
        <source>QS008</source>
        <extracomment>List of configured extensions, agents and trunks of your telephone system.</extracomment>
        <translation>Liste der eingerichteten Nebenstellen, Agenten und Amtsleitungen Ihrer Telefonanlage.</translation>
    </message>
    <message>
        <source>QS009</source>
        <extracomment>Enter a comma separated list of remote servers.</extracomment>
        <translation>Geben Sie eine durch Kommas getrennte Liste entfernter Server ein.</translation>
    </message>
    <message>
        <source>QS010</source>
        <extracomment>Enter the source path of the update files.  This should be in UNC format. ie \\server\share\path.</extracomment>
        <translation>Geben Sie den Quellpfad der Aktualisierungsdateien ein.  Er muss im UNC-Format angegeben werden, z. B. \\server\freigabe\pfad.</translation>
    </message>
    <message>
        <source>QS011</source>
        <extracomment>Select this option to send QuillPhone updates automatically.</extracomment>
        <translation>Wählen Sie diese Option, um QuillPhone-Aktualisierungen automatisch zu verteilen.</translation>
    </message>
    <message>
        <source>QS012</source>
        <extracomment>Enter a comma separated list of numbers to use when generating random calls.</extracomment>
        <translation>Geben Sie eine durch Kommas getrennte Liste der Nummern ein, die für Zufallsanrufe verwendet werden.</translation>
    </message>
    <message>
        <source>QS013</source>
        <extracomment>Enter the number of seconds to wait before making a new random call.</extracomment>
        <translation>Geben Sie ein, wie viele Sekunden bis zum nächsten Zufallsanruf gewartet wird.</translation>
    </message>
    <message>
        <source>QS014</source>
        <extracomment>Enter the TCP port of your telephone system.  You may need to get this value from your telephone maintainer.</extracomment>
        <translation>Geben Sie den TCP-Port Ihrer Telefonanlage ein.  Diesen Wert erhalten Sie gegebenenfalls von Ihrem Anlagenbetreuer.</translation>
    </message>
    <message>
        <source>QS015</source>
        <extracomment>Click this to add an Address Book to the list.</extracomment>
        <translation>Klicken Sie hier, um der Liste ein Adressbuch hinzuzufügen.</translation>
    </message>
    <message>
        <source>QS016</source>
        <extracomment>Click this to edit the properties of the selected Address Book.</extracomment>
        <translation>Klicken Sie hier, um die Eigenschaften des ausgewählten Adressbuchs zu bearbeiten.</translation>
    </message>
    <message>
        <source>QS017</source>
        <extracomment>Click this to remove the selected Address Book from &lt;1&gt;.</extracomment>
        <translation>Klicken Sie hier, um das ausgewählte Adressbuch aus &lt;1&gt; zu entfernen.</translation>
    </message>
    <message>
        <source>QS018</source>
        <extracomment>Click this to move the selected Address Book up in the priority order.</extracomment>
        <translation>Klicken Sie hier, um das ausgewählte Adressbuch in der Rangfolge nach oben zu verschieben.</translation>
    </message>
    <message>
        <source>QS019</source>
        <extracomment>Click this to move the selected Address Book down in the priority order.</extracomment>
        <translation>Klicken Sie hier, um das ausgewählte Adressbuch in der Rangfolge nach unten zu verschieben.</translation>
    </message>
    <message>
        <source>QS020</source>
        <extracomment>Click this to add a Routing Condition to the list.</extracomment>
        <translation>Klicken Sie hier, um der Liste eine Routing-Bedingung hinzuzufügen.</translation>
    </message>
    <message>
        <source>QS021</source>
        <extracomment>Click this to edit the properties of the selected Routing Condition.</extracomment>
        <translation>Klicken Sie hier, um die Eigenschaften der ausgewählten Routing-Bedingung zu bearbeiten.</translation>
    </message>
    <message>
        <source>QS022</source>
        <extracomment>Click this to stop using the selected Routing Condition in QuillPhone.</extracomment>
        <translation>Klicken Sie hier, um die ausgewählte Routing-Bedingung in QuillPhone nicht mehr zu verwenden.</translation>
    </message>
    <message>
        <source>QS023</source>
        <extracomment>Click this to move the selected Routing Condition up in the priority order.</extracomment>
        <translation>Klicken Sie hier, um die ausgewählte Routing-Bedingung in der Rangfolge nach oben zu verschieben.</translation>
    </message>
    <message>
        <source>QS024</source>
        <extracomment>Click this to move the selected Routing Condition down in the priority order.</extracomment>
        <translation>Klicken Sie hier, um die ausgewählte Routing-Bedingung in der Rangfolge nach unten zu verschieben.</translation>
    </message>
    <message>
        <source>QS025</source>
        <extracomment>Click this to add a campaign.</extracomment>
        <translation>Klicken Sie hier, um eine Kampagne hinzuzufügen.</translation>
    </message>
    <message>
        <source>QS026</source>
        <extracomment>Click this to edit the properties of the selected campaign.</extracomment>
        <translation>Klicken Sie hier, um die Eigenschaften der ausgewählten Kampagne zu bearbeiten.</translation>
    </message>
    <message>
        <source>QS027</source>
        <extracomment>Click this to stop using the selected campaign in QuillPhone.</extracomment>
        <translation>Klicken Sie hier, um die ausgewählte Kampagne in QuillPhone nicht mehr zu verwenden.</translation>
    </message>
    <message>
        <source>QS028</source>
        <extracomment>Click this to add a script.</extracomment>
        <translation>Klicken Sie hier, um ein Skript hinzuzufügen.</translation>
    </message>
    <message>
        <source>QS029</source>
        <extracomment>Click this to edit the properties of the script.</extracomment>
        <translation>Klicken Sie hier, um die Eigenschaften des Skripts zu bearbeiten.</translation>
    </message>
    <message>
        <source>QS030</source>
        <extracomment>Click this to remove the selected script.</extracomment>
        <translation>Klicken Sie hier, um das ausgewählte Skript zu entfernen.</translation>
    </message>
    <message>
        <source>QS031</source>
        <extracomment>Click this button to exit Configuration without saving changes.</extracomment>
        <translation>Klicken Sie auf diese Schaltfläche, um die Konfiguration ohne Speichern der Änderungen zu beenden.</translation>
    </message>
    <message>
        <source>QS032</source>
        <extracomment>Select which Com port or network protocol your telephone system is connected to the server on.</extracomment>
        <translation>Wählen Sie, über welchen COM-Port oder welches Netzwerkprotokoll Ihre Telefonanlage mit dem Server verbunden ist.</translation>
    </message>
    <message>
        <source>QS033</source>
        <extracomment>Click this button to add a new extension.</extracomment>
        <translation>Klicken Sie auf diese Schaltfläche, um eine neue Nebenstelle hinzuzufügen.</translation>
    </message>
    <message>
        <source>QS034</source>
        <extracomment>Click this button to edit the properties of the selected extension.</extracomment>
        <translation>Klicken Sie auf diese Schaltfläche, um die Eigenschaften der ausgewählten Nebenstelle zu bearbeiten.</translation>
    </message>
    <message>
        <source>QS035</source>
        <extracomment>Click this button to remove the selected extension.</extracomment>
        <translation>Klicken Sie auf diese Schaltfläche, um die ausgewählte Nebenstelle zu entfernen.</translation>
    </message>
    <message>
        <source>QS036</source>
        <extracomment>Click this button to save changes and exit Configuration.</extracomment>
        <translation>Klicken Sie auf diese Schaltfläche, um die Änderungen zu speichern und die Konfiguration zu beenden.</translation>
    </message>
    <message>
        <source>QS037</source>
        <extracomment>Enter the area code of the city your telephone system is in.</extracomment>
        <translation>Geben Sie die Vorwahl des Ortes ein, an dem sich Ihre Telefonanlage befindet.</translation>
    </message>
    <message>
        <source>QS038</source>
        <extracomment>List of the installed QuillPhone scripts</extracomment>
        <translation>Liste der installierten QuillPhone-Skripte</translation>
    </message>
    <message>
        <source>QS039</source>
        <extracomment>Enter the Com port&apos;s baud rate, parity checking, data bits and stop bits settings here.</extracomment>
        <translation>Geben Sie hier Baudrate, Parität, Datenbits und Stoppbits des COM-Ports ein.</translation>
    </message>
    <message>
        <source>QS040</source>
        <extracomment>Enter your site name here.</extracomment>
        <translation>Geben Sie hier den Namen Ihres Standorts ein.</translation>
    </message>
    <message>
        <source>QS041</source>
        <extracomment>This is the list of codes dialed to access the various special features of your telephone system.</extracomment>
        <translation>Dies ist die Liste der Codes, mit denen die Sonderfunktionen Ihrer Telefonanlage gewählt werden.</translation>
    </message>
    <message>
        <source>QS044</source>
        <extracomment>Enter the number which must be dialed before dialing an external number.</extracomment>
        <translation>Geben Sie die Nummer ein, die vor einer externen Rufnummer gewählt werden muss.</translation>
    </message>
    <message>
        <source>QS045</source>
        <extracomment>Enter the LCR codes separated by commas which can precede external numbers.</extracomment>
        <translation>Geben Sie die LCR-Codes durch Kommas getrennt ein, die externen Rufnummern vorangestellt werden können.</translation>
    </message>
    <message>
        <source>QS046</source>
        <extracomment>Enter the main operator&apos;s extension or group number.</extracomment>
        <translation>Geben Sie die Nebenstellen- oder Gruppennummer der Zentrale ein.</translation>
    </message>
    <message>
        <source>QS047</source>
        <extracomment>Enter the number to use to access the voice mail.</extracomment>
        <translation>Geben Sie die Nummer ein, über die die Voicemail erreicht wird.</translation>
    </message>
    <message>
        <source>QS048</source>
        <extracomment>Select the type of voice mail used.</extracomment>
        <translation>Wählen Sie den verwendeten Voicemail-Typ.</translation>
    </message>
    <message>
        <source>QS049</source>
        <extracomment>Enter the IP address of the voice mail.</extracomment>
        <translation>Geben Sie die IP-Adresse der Voicemail ein.</translation>
    </message>
    <message>
        <source>QS049</source>
        <comment>Select the type of telephone system &lt;1&gt; is connected to from the list.</comment>
        <translation>Wählen Sie aus der Liste den Typ der Telefonanlage, mit der &lt;1&gt; verbunden ist.</translation>
    </message>
    <message>
        <source>QS050</source>
        <extracomment>List of Routing Conditions &lt;1&gt; has been configured to use.</extracomment>
        <translation>Liste der Routing-Bedingungen, für die &lt;1&gt; eingerichtet ist.</translation>
    </message>
    <message>
        <source>QS051</source>
        <extracomment>Enter a name to display when the campaign is used.</extracomment>
        <translation>Geben Sie den Namen ein, der angezeigt wird, wenn die Kampagne verwendet wird.</translation>
    </message>
    <message>
        <source>QS052</source>
        <extracomment>Select a script to modify.</extracomment>
        <translation>Wählen Sie ein Skript zum Bearbeiten aus.</translation>
    </message>
    <message>
        <source>QS053</source>
        <extracomment>Select a result to modify.</extracomment>
        <translation>Wählen Sie ein Ergebnis zum Bearbeiten aus.</translation>
    </message>
    <message>
        <source>QS054</source>
        <extracomment>Click to undo any changes and close this window.</extracomment>
        <translation>Klicken Sie hier, um alle Änderungen zu verwerfen und dieses Fenster zu schließen.</translation>
    </message>
    <message>
        <source>QS055</source>
        <extracomment>Click to save changes and close this window.</extracomment>
        <translation>Klicken Sie hier, um die Änderungen zu speichern und dieses Fenster zu schließen.</translation>
    </message>
    <message>
        <source>QS056</source>
        <extracomment>Open ODBC selection window.</extracomment>
        <translation>Öffnet das Fenster zur Auswahl der Datenbank.</translation>
    </message>
    <message>
        <source>QS057</source>
        <extracomment>Enter the path/filename of the campaign.</extracomment>
        <translation>Geben Sie Pfad und Dateinamen der Kampagnendatenbank ein.</translation>
    </message>
    <message>
        <source>QS058</source>
        <extracomment>Choose which table from the database to use as an campaign.</extracomment>
        <translation>Wählen Sie die Tabelle oder Abfrage der Datenbank, die als Kampagne verwendet wird.</translation>
    </message>
    <message>
        <source>QS059</source>
        <extracomment>Set up general information about the campaign.</extracomment>
        <translation>Richten Sie die allgemeinen Angaben zur Kampagne ein.</translation>
    </message>
    <message>
        <source>QS060</source>
        <extracomment>Configure the scripts for the campaign.</extracomment>
        <translation>Richten Sie die Skripte der Kampagne ein.</translation>
    </message>
    <message>
        <source>QS063</source>
        <extracomment>Set up the fields shown in the Contact Details window.</extracomment>
        <translation>Legen Sie fest, welche Felder im Fenster „Kontaktdetails“ angezeigt werden.</translation>
    </message>
    <message>
        <source>QS064</source>
        <extracomment>Select the Address Book to check callers against.</extracomment>
        <translation>Wählen Sie das Adressbuch, mit dem Anrufer abgeglichen werden.</translation>
    </message>
    <message>
        <source>QS065</source>
        <extracomment>Enter any criteria to match for called numbers.  Wildcards (*) and Commas (,) are valid.</extracomment>
        <translation>Geben Sie Kriterien für die angerufenen Nummern ein.  Platzhalter (*) und Kommas (,) sind zulässig.</translation>
    </message>
    <message>
        <source>QS066</source>
        <extracomment>Enter any criteria to match for callers.  Wildcards (*) and Commas (,) are valid.</extracomment>
        <translation>Geben Sie Kriterien für die Anrufer ein.  Platzhalter (*) und Kommas (,) sind zulässig.</translation>
    </message>
    <message>
        <source>QS067</source>
        <extracomment>Enter the destination address to route calls to.  This entry is mandatory.</extracomment>
        <translation>Geben Sie das Ziel ein, an das Anrufe geleitet werden.  Diese Angabe ist erforderlich.</translation>
    </message>
    <message>
        <source>QS068</source>
        <extracomment>Enter any criteria to match for ringing extensions.  Wildcards (*) and Commas (,) are valid.</extracomment>
        <translation>Geben Sie Kriterien für die klingelnden Nebenstellen ein.  Platzhalter (*) und Kommas (,) sind zulässig.</translation>
    </message>
    <message>
        <source>QS069</source>
        <extracomment>Enter the name of this Routing Condition.</extracomment>
        <translation>Geben Sie den Namen dieser Routing-Bedingung ein.</translation>
    </message>
    <message>
        <source>QS070</source>
        <extracomment>Click to undo any changes and close this window.</extracomment>
        <translation>Klicken Sie hier, um die Änderungen zu verwerfen und dieses Fenster zu schließen.</translation>
    </message>
    <message>
        <source>QS071</source>
        <extracomment>Click to save changes and close this window.</extracomment>
        <translation>Klicken Sie hier, um die Änderungen zu speichern und dieses Fenster zu schließen.</translation>
    </message>
    <message>
        <source>QS072</source>
        <extracomment>List of current Address Books.</extracomment>
        <translation>Liste der aktuellen Adressbücher.</translation>
    </message>
    <message>
        <source>QS073</source>
        <extracomment>Click to assign an action or script to a button.</extracomment>
        <translation>Klicken Sie hier, um einer Taste eine Aktion oder ein Skript zuzuweisen.</translation>
    </message>
    <message>
        <source>QS074</source>
        <extracomment>Click to assign a script to an event.</extracomment>
        <translation>Klicken Sie hier, um einem Ereignis ein Skript zuzuweisen.</translation>
    </message>
    <message>
        <source>QS075</source>
        <extracomment>Select the number of buttons to display.</extracomment>
        <translation>Wählen Sie die Anzahl der angezeigten Tasten.</translation>
    </message>
    <message>
        <source>QS076</source>
        <extracomment>Return to main screen without saving changes.</extracomment>
        <translation>Zurück zum Hauptfenster, ohne die Änderungen zu speichern.</translation>
    </message>
    <message>
        <source>QS077</source>
        <extracomment>Enter department this extension is in.</extracomment>
        <translation>Geben Sie die Abteilung dieser Nebenstelle ein.</translation>
    </message>
    <message>
        <source>QS078</source>
        <extracomment>Enter this extension&apos;s DDI number. This is normally the full DDI number excluding the area code.</extracomment>
        <translation>Geben Sie die Durchwahlnummer (DDI) dieser Nebenstelle ein. Das ist normalerweise die vollständige Durchwahlnummer ohne Vorwahl.</translation>
    </message>
    <message>
        <source>QS079</source>
        <extracomment>Enter extension number here. Use a range symbol &apos;-&apos; to create several extensions.</extracomment>
        <translation>Geben Sie hier die Nummer der Nebenstelle ein. Mit dem Bereichszeichen „-“ legen Sie mehrere Nebenstellen an.</translation>
    </message>
    <message>
        <source>QS080</source>
        <extracomment>Enter agent number here. Use a range symbol &apos;-&apos; to create several agents.</extracomment>
        <translation>Geben Sie hier die Nummer des Agenten ein. Mit dem Bereichszeichen „-“ legen Sie mehrere Agenten an.</translation>
    </message>
    <message>
        <source>QS081</source>
        <extracomment>Enter trunk number here. Use a range symbol &apos;-&apos; to create several trunks.</extracomment>
        <translation>Geben Sie hier die Nummer der Amtsleitung ein. Mit dem Bereichszeichen „-“ legen Sie mehrere Amtsleitungen an.</translation>
    </message>
    <message>
        <source>QS082</source>
        <extracomment>Check this to disable monitoring of this extension.</extracomment>
        <translation>Aktivieren Sie diese Option, um die Überwachung dieser Nebenstelle abzuschalten.</translation>
    </message>
    <message>
        <source>QS083</source>
        <extracomment>Check this to ignore this extension when analyzing missed calls.</extracomment>
        <translation>Aktivieren Sie diese Option, um diese Nebenstelle bei der Auswertung verpasster Anrufe nicht zu berücksichtigen.</translation>
    </message>
    <message>
        <source>QS084</source>
        <extracomment>Check this to enable dialing from this extension.</extracomment>
        <translation>Aktivieren Sie diese Option, um das Wählen von dieser Nebenstelle aus zu erlauben.</translation>
    </message>
    <message>
        <source>QS085</source>
        <extracomment>Check this to enable viewing of the call log.</extracomment>
        <translation>Aktivieren Sie diese Option, um das Anzeigen der Anrufliste zu erlauben.</translation>
    </message>
    <message>
        <source>QS086</source>
        <extracomment>Check this to enable viewing of others call logs.</extracomment>
        <translation>Aktivieren Sie diese Option, um das Anzeigen der Anruflisten anderer zu erlauben.</translation>
    </message>
    <message>
        <source>QS087</source>
        <extracomment>Check this to enable viewing of the address book.</extracomment>
        <translation>Aktivieren Sie diese Option, um das Anzeigen des Adressbuchs zu erlauben.</translation>
    </message>
    <message>
        <source>QS088</source>
        <extracomment>Check this to allow user to edit their details in QuillPhone.</extracomment>
        <translation>Aktivieren Sie diese Option, damit der Benutzer seine Angaben in QuillPhone bearbeiten kann.</translation>
    </message>
    <message>
        <source>QS089</source>
        <extracomment>Check this to exclude this extension from the extension status screen.</extracomment>
        <translation>Aktivieren Sie diese Option, um diese Nebenstelle aus der Nebenstellen-Statusanzeige auszuschließen.</translation>
    </message>
    <message>
        <source>QS090</source>
        <extracomment>Check this to treat this extension as a main number in calculations.</extracomment>
        <translation>Aktivieren Sie diese Option, um diese Nebenstelle in Auswertungen als Hauptnummer zu behandeln.</translation>
    </message>
    <message>
        <source>QS091</source>
        <extracomment>Check this to enable editing of address book.</extracomment>
        <translation>Aktivieren Sie diese Option, um das Bearbeiten des Adressbuchs zu erlauben.</translation>
    </message>
    <message>
        <source>QS092</source>
        <extracomment>Check this to include all departments in the user&apos;s extension status window.</extracomment>
        <translation>Aktivieren Sie diese Option, um alle Abteilungen im Nebenstellen-Statusfenster des Benutzers anzuzeigen.</translation>
    </message>
    <message>
        <source>QS093</source>
        <extracomment>Check this to allow the user to configure their own buttons.</extracomment>
        <translation>Aktivieren Sie diese Option, damit der Benutzer seine Tasten selbst einrichten kann.</translation>
    </message>
    <message>
        <source>QS094</source>
        <extracomment>Check this to allow the user to use Extension Status Window.</extracomment>
        <translation>Aktivieren Sie diese Option, damit der Benutzer das Nebenstellen-Statusfenster verwenden kann.</translation>
    </message>
    <message>
        <source>QS095</source>
        <extracomment>Check this to allow the user to &apos;pickup&apos; ringing calls.</extracomment>
        <translation>Aktivieren Sie diese Option, damit der Benutzer klingelnde Anrufe „heranholen“ kann.</translation>
    </message>
    <message>
        <source>QS096</source>
        <extracomment>Check this to enable the user to view their &apos;To do&apos; list.</extracomment>
        <translation>Aktivieren Sie diese Option, damit der Benutzer seine „Aufgaben“-Liste sehen kann.</translation>
    </message>
    <message>
        <source>QS097</source>
        <extracomment>Check this to allow the user to view the features menu.</extracomment>
        <translation>Aktivieren Sie diese Option, damit der Benutzer das Funktionsmenü sehen kann.</translation>
    </message>
    <message>
        <source>QS098</source>
        <extracomment>Check this to allow the user to set callbacks on external numbers.</extracomment>
        <translation>Aktivieren Sie diese Option, damit der Benutzer Rückrufe auf externe Nummern setzen kann.</translation>
    </message>
    <message>
        <source>QS099</source>
        <extracomment>Check this to allow the user to reroute callers to external numbers.</extracomment>
        <translation>Aktivieren Sie diese Option, damit der Benutzer Anrufer auf externe Nummern umleiten kann.</translation>
    </message>
    <message>
        <source>QS100</source>
        <extracomment>Check this to keep this user&apos;s call details private.</extracomment>
        <translation>Aktivieren Sie diese Option, um die Anrufdaten dieses Benutzers vertraulich zu behandeln.</translation>
    </message>
    <message>
        <source>QS101</source>
        <extracomment>Check this to allow this user to perform administrative functions.</extracomment>
        <translation>Aktivieren Sie diese Option, damit dieser Benutzer Verwaltungsfunktionen ausführen kann.</translation>
    </message>
    <message>
        <source>QS102</source>
        <extracomment>Check this to disable monitoring of this trunk.</extracomment>
        <translation>Aktivieren Sie diese Option, um die Überwachung dieser Amtsleitung abzuschalten.</translation>
    </message>
    <message>
        <source>QS103</source>
        <extracomment>Check this to use the extension&apos;s name from the telephone system.  This is normally updated during calls.</extracomment>
        <translation>Aktivieren Sie diese Option, um den Namen der Nebenstelle aus der Telefonanlage zu übernehmen.  Er wird normalerweise während der Anrufe aktualisiert.</translation>
    </message>
    <message>
        <source>QS104</source>
        <extracomment>This option means that the extension must have an agent logged in before calls can be made.</extracomment>
        <translation>Diese Option bedeutet, dass an der Nebenstelle ein Agent angemeldet sein muss, bevor Anrufe möglich sind.</translation>
    </message>
    <message>
        <source>QS105</source>
        <extracomment>Check this to include this trunk on the extension status screen.</extracomment>
        <translation>Aktivieren Sie diese Option, um diese Amtsleitung in die Nebenstellen-Statusanzeige aufzunehmen.</translation>
    </message>
    <message>
        <source>QS106</source>
        <extracomment>Enter name of this extension.</extracomment>
        <translation>Geben Sie den Namen dieser Nebenstelle ein.</translation>
    </message>
    <message>
        <source>QS107</source>
        <extracomment>Enter name of this agent.</extracomment>
        <translation>Geben Sie den Namen dieses Agenten ein.</translation>
    </message>
    <message>
        <source>QS108</source>
        <extracomment>Enter name of this trunk.</extracomment>
        <translation>Geben Sie den Namen dieser Amtsleitung ein.</translation>
    </message>
    <message>
        <source>QS109</source>
        <extracomment>Select the Address Book to create new contacts in.</extracomment>
        <translation>Wählen Sie das Adressbuch, in dem neue Kontakte angelegt werden.</translation>
    </message>
    <message>
        <source>QS110</source>
        <extracomment>Save changes and return to main screen.</extracomment>
        <translation>Änderungen speichern und zum Hauptfenster zurückkehren.</translation>
    </message>
    <message>
        <source>QS111</source>
        <extracomment>Click to add a private Address Book for the selected user(s).</extracomment>
        <translation>Klicken Sie hier, um den ausgewählten Benutzern ein privates Adressbuch hinzuzufügen.</translation>
    </message>
    <message>
        <source>QS112</source>
        <extracomment>Click to configure the selected Address Book for the selected user(s).</extracomment>
        <translation>Klicken Sie hier, um das ausgewählte Adressbuch für die ausgewählten Benutzer einzurichten.</translation>
    </message>
    <message>
        <source>QS113</source>
        <extracomment>Click to remove the selected private Address Book.</extracomment>
        <translation>Klicken Sie hier, um das ausgewählte private Adressbuch zu entfernen.</translation>
    </message>
    <message>
        <source>QS114</source>
        <extracomment>Enter QuillPhone password for this extension.</extracomment>
        <translation>Geben Sie das QuillPhone-Kennwort für diese Nebenstelle ein.</translation>
    </message>
    <message>
        <source>QS115</source>
        <extracomment>Enter the number of extension&apos;s assistant.</extracomment>
        <translation>Geben Sie die Nummer des Assistenten dieser Nebenstelle ein.</translation>
    </message>
    <message>
        <source>QS116</source>
        <extracomment>Enter the number of user&apos;s mobile telephone number.</extracomment>
        <translation>Geben Sie die Mobilnummer des Benutzers ein.</translation>
    </message>
    <message>
        <source>QS117</source>
        <extracomment>Enter general information for the directory entry.</extracomment>
        <translation>Geben Sie allgemeine Angaben zum Verzeichniseintrag ein.</translation>
    </message>
    <message>
        <source>QS118</source>
        <extracomment>Select the available features of this extension in QuillPhone.</extracomment>
        <translation>Wählen Sie die in QuillPhone verfügbaren Funktionen dieser Nebenstelle.</translation>
    </message>
    <message>
        <source>QS119</source>
        <extracomment>Configure advanced features. The system will work optimally if this data is correct.</extracomment>
        <translation>Richten Sie erweiterte Funktionen ein. Das System arbeitet optimal, wenn diese Angaben stimmen.</translation>
    </message>
    <message>
        <source>QS119</source>
        <comment>Configure how Address Books work on the users machine. Not all Address Books are available to all users.</comment>
        <translation>Legen Sie fest, wie Adressbücher auf dem Rechner des Benutzers arbeiten. Nicht alle Adressbücher stehen allen Benutzern zur Verfügung.</translation>
    </message>
    <message>
        <source>QS120</source>
        <extracomment>Configure programmable buttons.  Not all buttons are available to all users.</extracomment>
        <translation>Richten Sie programmierbare Tasten ein.  Nicht alle Tasten stehen allen Benutzern zur Verfügung.</translation>
    </message>
    <message>
        <source>QS121</source>
        <extracomment>Configure events. Events are only available to certain client products. Please check the manual for more information.</extracomment>
        <translation>Richten Sie Ereignisse ein. Ereignisse gibt es nur in bestimmten Client-Produkten. Weitere Informationen finden Sie im Handbuch.</translation>
    </message>
    <message>
        <source>QS121</source>
        <comment>Please enter any notes as appropriate.</comment>
        <translation>Geben Sie hier bei Bedarf Notizen ein.</translation>
    </message>
    <message>
        <source>QS122</source>
        <extracomment>Choose whether to set up an extension, agent, speed dial or a trunk.</extracomment>
        <translation>Wählen Sie, ob eine Nebenstelle, ein Agent, eine Kurzwahl oder eine Amtsleitung eingerichtet wird.</translation>
    </message>
    <message>
        <source>QS123</source>
        <extracomment>Check this to allow new entries to be added to this address book.</extracomment>
        <translation>Aktivieren Sie diese Option, damit diesem Adressbuch neue Einträge hinzugefügt werden können.</translation>
    </message>
    <message>
        <source>QS124</source>
        <extracomment>Choose whether or not to show the alphabetical index in the Address Book window of QuillPhone.</extracomment>
        <translation>Wählen Sie, ob im Adressbuchfenster von QuillPhone der alphabetische Index angezeigt wird.</translation>
    </message>
    <message>
        <source>QS125</source>
        <extracomment>Enter a name to display when the address book is used.</extracomment>
        <translation>Geben Sie den Namen ein, der bei Verwendung des Adressbuchs angezeigt wird.</translation>
    </message>
    <message>
        <source>QS126</source>
        <extracomment>Enter any administrative notes.</extracomment>
        <translation>Geben Sie Notizen für die Verwaltung ein.</translation>
    </message>
    <message>
        <source>QS127</source>
        <extracomment>Click to force a refresh of this Address Book&apos;s cache.</extracomment>
        <translation>Klicken Sie hier, um den Cache dieses Adressbuchs sofort zu aktualisieren.</translation>
    </message>
    <message>
        <source>QS128</source>
        <extracomment>Click to undo any changes and close this window.</extracomment>
        <translation>Klicken Sie hier, um die Änderungen zu verwerfen und dieses Fenster zu schließen.</translation>
    </message>
    <message>
        <source>QS129</source>
        <extracomment>Click to configure the details of this Address Book.</extracomment>
        <translation>Klicken Sie hier, um die Einzelheiten dieses Adressbuchs einzurichten.</translation>
    </message>
    <message>
        <source>QS130</source>
        <extracomment>Click to save changes and close this window.</extracomment>
        <translation>Klicken Sie hier, um die Änderungen zu speichern und dieses Fenster zu schließen.</translation>
    </message>
    <message>
        <source>QS130</source>
        <comment>Enter the caption shown on this button in the user&apos;s button bar.</comment>
        <translation>Geben Sie die Beschriftung ein, die diese Taste in der Tastenleiste des Benutzers zeigt.</translation>
    </message>
    <message>
        <source>QS131</source>
        <extracomment>Select the type of Address Book to use.</extracomment>
        <translation>Wählen Sie den Typ des zu verwendenden Adressbuchs.</translation>
    </message>
    <message>
        <source>QS131</source>
        <comment>Enter the extension this button shows, or to which it deflects the call.</comment>
        <translation>Geben Sie die Nebenstelle ein, die diese Taste anzeigt oder an die sie den Anruf umleitet.</translation>
    </message>
    <message>
        <source>QS132</source>
        <extracomment>Set up general information about the address book.</extracomment>
        <translation>Richten Sie allgemeine Angaben zum Adressbuch ein.</translation>
    </message>
    <message>
        <source>QS133</source>
        <extracomment>Enter update information for the address book.</extracomment>
        <translation>Geben Sie die Angaben zur Aktualisierung des Adressbuchs ein.</translation>
    </message>
    <message>
        <source>QS134</source>
        <extracomment>Show statistical analysis of searches made in this Address Book.</extracomment>
        <translation>Zeigt eine statistische Auswertung der Suchen in diesem Adressbuch.</translation>
    </message>
    <message>
        <source>QS135</source>
        <extracomment>The address book&apos;s data will be refreshed every time this number of hours elapses.</extracomment>
        <translation>Die Daten des Adressbuchs werden jedes Mal aktualisiert, wenn diese Anzahl Stunden vergangen ist.</translation>
    </message>
    <message>
        <source>QS136</source>
        <extracomment>Check this to use a live connection. Live Address Books are slower but will reflect immediate changes.</extracomment>
        <translation>Aktivieren Sie diese Option für eine Live-Verbindung. Live-Adressbücher sind langsamer, zeigen Änderungen aber sofort.</translation>
    </message>
    <message>
        <source>QS137</source>
        <extracomment>Check this to use a cached connection. Cached Address Books are faster but do not reflect immediate changes.</extracomment>
        <translation>Aktivieren Sie diese Option für eine zwischengespeicherte Verbindung. Zwischengespeicherte Adressbücher sind schneller, zeigen Änderungen aber nicht sofort.</translation>
    </message>
    <message>
        <source>QS138</source>
        <extracomment>The address book&apos;s data will be refreshed every day at this time.</extracomment>
        <translation>Die Daten des Adressbuchs werden jeden Tag zu dieser Uhrzeit aktualisiert.</translation>
    </message>
    <message>
        <source>QS139</source>
        <extracomment>Enter the time to disconnect from this Addres Bok from. This allows the Address Book (database) to be backed up.</extracomment>
        <translation>Geben Sie die Uhrzeit ein, ab der die Verbindung zu diesem Adressbuch getrennt wird. So kann das Adressbuch (die Datenbank) gesichert werden.</translation>
    </message>
    <message>
        <source>QS140</source>
        <extracomment>Enter the time to reconnect to this Addres Bok from. This disconnection allows the Address Book (database) to be backed up.</extracomment>
        <translation>Geben Sie die Uhrzeit ein, ab der die Verbindung zu diesem Adressbuch wiederhergestellt wird. Die Trennung ermöglicht die Sicherung des Adressbuchs (der Datenbank).</translation>
    </message>
    <message>
        <source>QS141</source>
        <extracomment>Configure campaigns.  Campaigns are available to QuillCampaign users.</extracomment>
        <translation>Richten Sie Kampagnen ein.  Kampagnen stehen QuillCampaign-Benutzern zur Verfügung.</translation>
    </message>
    <message>
        <source>QS142</source>
        <extracomment>Enter name of this speed dial.</extracomment>
        <translation>Geben Sie den Namen dieser Kurzwahl ein.</translation>
    </message>
    <message>
        <source>QS143</source>
        <extracomment>Enter the weekday(s) during which this Route will operate.</extracomment>
        <translation>Geben Sie die Wochentage ein, an denen diese Route gilt.</translation>
    </message>
    <message>
        <source>QS144</source>
        <extracomment>Enter the Date(s) during which this Route will operate.  Multiple dates can be separated by commas. / Enter the times during which this Route will operate. This can be a list, ie 09:00-11:30, 14:00-17:00</extracomment>
        <translation>Geben Sie die Tage oder Uhrzeiten ein, zu denen diese Route gilt.  Mehrere Angaben werden durch Kommas getrennt, z. B. 09:00-11:30, 14:00-17:00</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save All</source>
        <translation>Alle speichern</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Ja</translation>
    </message>
    <message>
        <source>Yes to &amp;All</source>
        <translation>Ja, &amp;alle</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Nein</translation>
    </message>
    <message>
        <source>N&amp;o to All</source>
        <translation>N&amp;ein, keine</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Restore Defaults</source>
        <translation>Voreinstellungen</translation>
    </message>
</context>
</TS>
