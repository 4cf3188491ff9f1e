"""What the window says, by the place where it says it, to the letter."""

MENUS = {
    ("Datei",): ["Ordner öffnen …", "Zuletzt geöffnet", "Neu laden", "Ordnerliste aktualisieren", "Schließen", "Beenden"],
    ("Bearbeiten",): ["Papierkorb rückgängig", "Ausschneiden", "Kopieren", "Einfügen", "Alles auswählen"],
    ("Ansicht",): ["Seitenleiste ausblenden", "Übergeordneter Ordner", "Vollbild"],
    ("Fotos",): [
        "Diashow starten", "Diashow zufällig", "Diashow-Intervall", "In den Papierkorb legen", "Verschieben nach …",
        "Kopieren nach …", "In Zwischenablage kopieren", "Kontaktabzug (PDF) …", "Im Finder zeigen",
        "Mit Standard-App öffnen", "Alle auswählen  (⌘A)", "Auswahl aufheben  (⇧⌘A)", "Auswahl umkehren",
        "Infos einblenden  (I)", "Dateinamen anzeigen", "Auflösung anzeigen"],
    ("Fotos", "Diashow-Intervall"): [f"{seconds} Sekunden" for seconds in (2, 3, 4, 6, 10, 20)],
    ("Hilfe",): ["Pixelhain-Hilfe", "Über Pixelhain"],
}

# Name and tip of each control.
TOOLBAR = [
    ("push button", "Seitenleiste ausblenden", "Seitenleiste ausblenden (⌃⌘S)"),
    ("push button", "Ordner öffnen", "Ordner öffnen (⌘O)"),
    ("slider", "Vorschaugröße", "Vorschaugröße (+ / −)"),
    ("button menu", "Ansicht", "Sortierung & Ansicht"),
    ("push button", "Diashow", "Diashow aller Fotos (⇧⌘D)"),
    ("push button", "Papierkorb", "In den Papierkorb (⌘⌫, rückgängig mit ⌘Z)"),
    ("button menu", "Aktionen", "Aktionen für die Auswahl"),
    ("button menu", "Teilen", "Auswahl teilen"),
]
TOOLBAR_WITH_THREE_MARKED = [
    ("push button", "Diashow", "Diashow der Auswahl (⇧⌘D)"),
    ("push button", "Papierkorb", "3 ausgewählte Fotos in den Papierkorb (⌘⌫, rückgängig mit ⌘Z)"),
]
SEARCH = "Dateiname filtern"

# None is a line between the entries.
TOOLBAR_MENUS = {
    "Ansicht": [
        "Sortieren nach", "Name", "Änderungsdatum", "Dateigröße", "Aufsteigend", None, "Unterordner einbeziehen",
        "Dateinamen anzeigen", "Auflösung anzeigen"],
    "Aktionen": [
        "In den Papierkorb legen  (⌘⌫)", "Verschieben nach …", "Kopieren nach …", "In Zwischenablage kopieren", None,
        "Kontaktabzug (PDF) …", None, "Im Finder zeigen", "Mit Standard-App öffnen", None, "Alle auswählen",
        "Auswahl aufheben", "Auswahl umkehren"],
}

SIDEBAR = {
    "heading": "Ordner",
    "refresh": "Ordnerliste aktualisieren",
    "up": "Übergeordneten Ordner anzeigen",
    "up tip": "Übergeordneten Ordner anzeigen (⌘↑)",
    "open": "Ordner öffnen …",
    "counted": "{count} Fotos direkt in diesem Ordner",
    "counted one": "1 Foto direkt in diesem Ordner",
}
FOLDER_MENUS = {
    "not shown": [
        "Nur diesen Ordner anzeigen", "Zur Auswahl hinzufügen", "Als oberste Ebene festlegen", None, "Im Finder zeigen",
        "Ordnerbaum neu laden"],
    "one of those shown": [
        "Nur diesen Ordner anzeigen", "Aus Auswahl entfernen", "Als oberste Ebene festlegen", None, "Im Finder zeigen",
        "Ordnerbaum neu laden"],
    "the only one, at the top": ["Nur diesen Ordner anzeigen", None, "Im Finder zeigen", "Ordnerbaum neu laden"],
}

PHOTO_MENUS = {
    "not marked": [
        "Öffnen", "Auswählen", None, "In den Papierkorb", "Im Finder zeigen", "Mit Standard-App öffnen", "Teilen …"],
    "one of three marked": [
        "Öffnen", "Auswahl entfernen", None, "3 Fotos in den Papierkorb", "Im Finder zeigen", "Mit Standard-App öffnen",
        "Teilen …"],
}

STATUS = {
    "all": "{count} Fotos",
    "marked": "{count} Fotos · {marked} ausgewählt",
    "unmark": "Auswahl aufheben",
}

EMPTY = {
    "no folder": ["Ordner wählen oder hierher ziehen", "Ordner öffnen …"],
    "no photos": ["Keine Fotos in diesem Ordner", "Unterordner findest du links in der Seitenleiste."],
    "no photos, with those below": ["Keine Fotos in diesem Ordner"],
    "nothing found": ["Keine Treffer"],
}

VIEWER = {
    "position": "{position} / {count}",
    "tips": [
        "Zurück zur Übersicht (Esc / Leertaste)", "Auswählen und weiter zum nächsten Foto (X)", "Infos (I)",
        "Diashow ab hier (D)", "In den Papierkorb (⌘⌫)", "Teilen", "Vollbild (F)"],
    "unreadable": "Bild kann nicht gelesen werden",
    "paused": "Pausiert – Leertaste setzt fort, Esc beendet",
}

SHEET = {
    "title": "Kontaktabzug erstellen",
    "all": "Alle {count} Fotos",
    "marked": "{count} ausgewählte Fotos",
    "labels": ["Titel", "Papier"],
    "columns": "Spalten: 5",
    "papers": ["A4", "A3", "US Letter"],
    "boxes": ["Querformat", "Dateinamen anzeigen"],
    "buttons": ["Abbrechen", "Erstellen …"],
}

WINDOWS = {
    "no folder": "Pixelhain",
    "one folder": "{name} – {count} Fotos",
    "two folders": "2 Ordner – {count} Fotos",
    "help": "Pixelhain-Hilfe",
    "about": "Über Pixelhain",
    "open": "Wähle einen Ordner mit Fotos",
}
