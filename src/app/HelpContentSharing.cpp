#include "app/HelpContent.h"

namespace pixelhain {

HelpTopic contactSheetTopic()
{
    return { "contactsheet", "Kontaktabzug", "doc.richtext",
        {
            HelpText { "Ein Kontaktabzug ist ein PDF mit vielen kleinen Bildern auf jeder Seite, "
                       "gut zum Ausdrucken, Archivieren oder Verschicken." },
            HelpSteps { {
                "Wähle die gewünschten Fotos aus. Wählst du keine oder nur ein Foto, kommen alle "
                "Fotos des Ordners in den Kontaktabzug.",
                "Drücke **⌘P** oder wähle **Aktionen → Kontaktabzug (PDF) …**.",
                "Lege Titel, Spaltenzahl (2–10), Papierformat (A4, A3, US Letter), Hoch- oder "
                "Querformat und die Anzeige der Dateinamen fest.",
                "Klicke auf **Erstellen …** und wähle einen Speicherort.",
            } },
            HelpText { "Jede Seite trägt oben Titel, Anzahl der Fotos, Datum und Seitenzahl. Das "
                       "fertige PDF öffnet sich automatisch, zum Beispiel in Vorschau." },
            HelpTip { "Fünf bis sechs Spalten auf A4 sind ein guter Kompromiss aus Übersicht und "
                      "Bildgröße." },
        } };
}

HelpTopic shareTopic()
{
    return { "share", "Teilen", "square.and.arrow.up",
        {
            HelpText {
                "Mit dem **Teilen**-Knopf (Quadrat mit Pfeil) schickst du Fotos über die Dienste "
                "von macOS weiter: AirDrop, Mail, Nachrichten, Notizen, Fotos und weitere." },
            HelpBullets { {
                "In der **Galerie** teilst du die Auswahl, ohne Auswahl das umrandete Foto.",
                "In der **Vollansicht** teilst du das angezeigte Foto.",
                "Auch das Kontextmenü eines Vorschaubilds bietet **Teilen …** an.",
            } },
        } };
}

} // namespace pixelhain
