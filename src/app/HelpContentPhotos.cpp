#include "app/HelpContent.h"

namespace pixelhain {

HelpTopic selectTopic()
{
    return { "select", "Auswählen & Aussortieren", "checkmark.circle",
        {
            HelpHeading { "Fotos auswählen" },
            HelpKeys { {
                { "Kreis oben links", "Foto aus- oder abwählen" },
                { "⌘-Klick", "Einzelnes Foto aus- oder abwählen" },
                { "⇧-Klick", "Alle Fotos bis zu diesem auswählen" },
                { "X", "Umrandetes Foto aus- oder abwählen" },
                { "⇧ + Pfeiltasten", "Auswahl erweitern" },
                { "⌘A", "Alle auswählen" },
                { "⇧⌘A  oder  Esc", "Auswahl aufheben" },
            } },
            HelpText { "Im Menü **Fotos** kannst du die Auswahl außerdem umkehren. Ausgewählte "
                       "Fotos haben einen farbigen Rahmen und ein Häkchen. Die Statusleiste zeigt, "
                       "wie viele es sind." },
            HelpHeading { "Worauf wirken Aktionen?" },
            HelpBullets { {
                "In der **Vollansicht**: auf das gerade angezeigte Foto.",
                "In der **Galerie**: auf alle ausgewählten Fotos. Ist nichts ausgewählt, auf das "
                "umrandete Foto.",
            } },
            HelpHeading { "Schnell aussortieren" },
            HelpSteps { {
                "Klicke auf das erste Foto der Serie.",
                "Bei jedem Foto, das weg soll, drückst du **X** oder klickst auf **Auswählen**. "
                "Pixelhain markiert es und springt zum nächsten.",
                "Fotos, die bleiben sollen, überspringst du mit **→**.",
                "Am Ende drückst du **Esc**, um zur Galerie zurückzukehren.",
                "Mit dem **Papierkorb**-Knopf oder **⌘⌫** löschst du alle markierten Fotos auf "
                "einmal.",
            } },
            HelpTip { "Hast du dich vertan? Ein zweites X auf einem markierten Foto hebt die "
                      "Markierung auf, und Pixelhain bleibt dabei auf dem Foto stehen." },
        } };
}

HelpTopic filesTopic()
{
    return { "files", "Löschen, Verschieben, Kopieren", "trash",
        {
            HelpHeading { "In den Papierkorb legen" },
            HelpText { "Den **Papierkorb**-Knopf findest du in der Toolbar und in der Vollansicht. "
                       "Löschen geht außerdem über das Kontextmenü oder **⌘⌫**." },
            HelpText {
                "Die Fotos landen im Papierkorb des Finders. Gelöscht werden sie dabei nicht." },
            HelpText {
                "**⌘Z** holt die zuletzt in den Papierkorb gelegten Fotos zurück an ihren Platz." },
            HelpHeading { "Verschieben und Kopieren" },
            HelpText { "**Verschieben nach …** (⇧⌘M) und **Kopieren nach …** (⇧⌘K) findest du im "
                       "Menü **Aktionen** oder **Fotos**." },
            HelpText { "Im Dialog kannst du auch einen neuen Ordner anlegen. Pixelhain merkt sich "
                       "das zuletzt gewählte Ziel." },
            HelpText { "Gibt es im Ziel schon eine Datei mit demselben Namen, hängt Pixelhain eine "
                       "Nummer an, etwa „IMG_0001 2.jpg“. Überschrieben wird nichts." },
            HelpHeading { "Weitere Aktionen" },
            HelpKeys { {
                { "⇧⌘R", "Im Finder zeigen" },
                { "⌘↓", "Mit der Standard-App öffnen (z. B. Vorschau)" },
                { "⌘C",
                    "In die Zwischenablage kopieren, um es in Mail, Pages oder den Finder "
                    "einzusetzen" },
            } },
        } };
}

} // namespace pixelhain
