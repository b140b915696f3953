#pragma once

#include <memory>

class QWidget;

namespace sysadmin {

class Field;
class FieldEditor;

/// The editor for a field that holds a list: rows, picked lists, checked entries.
std::unique_ptr<FieldEditor> MakeListEditor(Field& field, QWidget* parent);

} // namespace sysadmin
