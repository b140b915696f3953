#include "look/Appearance.h"

#include "look/FlatStyle.h"

#include <QApplication>
#include <QToolTip>

namespace sysadmin {

namespace {

// Whether the desktop was dark before the program put its own palette on.
constexpr char DarkDesktopProperty[] = "darkDesktop";
// Whether the palette that the program has put on is the dark one.
constexpr char DarkProgramProperty[] = "darkProgram";

// The few colours from which a palette is made.
struct Colours {
    QColor window, base, alternate, button, raised;
    QColor text, muted, disabled;
    QColor line, softLine, deepLine;
    QColor accent, onAccent, link;
    QColor tip, onTip;
};

QPalette MakePalette(const Colours& colours) {
    QPalette palette;
    palette.setColor(QPalette::Window, colours.window);
    palette.setColor(QPalette::Base, colours.base);
    palette.setColor(QPalette::AlternateBase, colours.alternate);
    palette.setColor(QPalette::Button, colours.button);
    palette.setColor(QPalette::Light, colours.raised);
    palette.setColor(QPalette::Midlight, colours.softLine);
    palette.setColor(QPalette::Mid, colours.line);
    palette.setColor(QPalette::Dark, colours.deepLine);
    palette.setColor(QPalette::Shadow, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, colours.text);
        palette.setColor(QPalette::Disabled, role, colours.disabled);
    }
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, colours.muted);
    palette.setColor(QPalette::Highlight, colours.accent);
    palette.setColor(QPalette::HighlightedText, colours.onAccent);
    // A grid that waits for an edit to end keeps showing which row it is about.
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.line);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, colours.text);
    palette.setColor(QPalette::Disabled, QPalette::Base, colours.window);
    palette.setColor(QPalette::Link, colours.link);
    palette.setColor(QPalette::LinkVisited, colours.link);
    palette.setColor(QPalette::ToolTipBase, colours.tip);
    palette.setColor(QPalette::ToolTipText, colours.onTip);
    return palette;
}

} // namespace

std::optional<Appearance> AppearanceOf(const QString& word) {
    if (word == u"system")
        return Appearance::System;
    if (word == u"light")
        return Appearance::Light;
    if (word == u"dark")
        return Appearance::Dark;
    return {};
}

QString WordOf(Appearance appearance) {
    return appearance == Appearance::Light ? "light" : appearance == Appearance::Dark ? "dark" : "system";
}

QPalette LightPalette() {
    return MakePalette({.window = "#f4f5f8",
                        .base = "#ffffff",
                        .alternate = "#f8f9fb",
                        .button = "#ffffff",
                        .raised = "#ffffff",
                        .text = "#1c2330",
                        .muted = "#6b7484",
                        .disabled = "#9aa2b0",
                        .line = "#c8cdd6",
                        .softLine = "#e3e6ec",
                        .deepLine = "#8a92a0",
                        .accent = "#2563c9",
                        .onAccent = "#ffffff",
                        .link = "#1f5bbf",
                        .tip = "#2a3140",
                        .onTip = "#f4f5f8"});
}

QPalette DarkPalette() {
    return MakePalette({.window = "#1f232a",
                        .base = "#171a20",
                        .alternate = "#1c2026",
                        .button = "#2b313a",
                        .raised = "#343b46",
                        .text = "#e3e7ee",
                        .muted = "#939cab",
                        .disabled = "#68717f",
                        .line = "#434a56",
                        .softLine = "#2e343d",
                        .deepLine = "#737c8a",
                        .accent = "#376fd2",
                        .onAccent = "#ffffff",
                        .link = "#82b1f7",
                        .tip = "#e3e7ee",
                        .onTip = "#1f232a"});
}

void ApplyAppearance(QApplication& program, Appearance appearance) {
    if (!program.property(DarkDesktopProperty).isValid()) {
        program.setProperty(DarkDesktopProperty,
                            QApplication::palette().color(QPalette::Window).lightness() < 128);
        program.setStyle(new FlatStyle);
    }
    const bool darkDesktop = program.property(DarkDesktopProperty).toBool();
    const bool dark = appearance == Appearance::Dark || (appearance == Appearance::System && darkDesktop);
    if (program.property(DarkProgramProperty) == QVariant(dark))
        return; // a palette that is set goes to every widget, the same one too
    program.setProperty(DarkProgramProperty, dark);
    const QPalette palette = dark ? DarkPalette() : LightPalette();
    program.setPalette(palette);
    QToolTip::setPalette(palette); // tool tips do not follow the program's palette by themselves
}

} // namespace sysadmin
