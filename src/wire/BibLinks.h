#pragma once

#include "wire/Lengths.h"

#include <QString>

/// What both ends know of links between bibliographic records.
namespace sysadmin::wire::links {

inline constexpr int CaptionLength = lengths::TextLength;

/// What the record that is found is to the one with the field.
namespace direction {
inline const QString Host = "H";
inline const QString Part = "P";
inline const QString Earlier = "E";
inline const QString Later = "L";
inline const QString Related = "R";
} // namespace direction

inline const QString AnyIndicator = "*";
/// Stands for a blank indicator.
inline const QString BlankIndicator = "_";

bool IsDirection(const QString& text);
/// Three digits, the last of which may be "X" for any.
bool IsField(const QString& text);
/// A digit or a lower-case letter; empty for none.
bool IsSubfield(const QString& text);
/// Control fields (001 to 009) have neither indicators nor subfields.
bool IsControlField(const QString& field);

} // namespace sysadmin::wire::links
