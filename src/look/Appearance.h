#pragma once

#include <QPalette>
#include <QString>

#include <optional>

class QApplication;

namespace sysadmin {

/// Which palette the program wears.
enum class Appearance {
    System, ///< dark when the desktop is dark
    Light,
    Dark,
};

/// The appearance of a word of the command line ("system", "light", "dark"), or nothing.
std::optional<Appearance> AppearanceOf(const QString& word);
QString WordOf(Appearance appearance);

/// The program's own colours. Everything is drawn with them, so both go through all screens alike.
QPalette LightPalette();
QPalette DarkPalette();

/// Gives the program its style and palette, first before a window is made and again whenever the operator
/// wants another appearance; open windows follow at once.
void ApplyAppearance(QApplication& program, Appearance appearance);

} // namespace sysadmin
