#pragma once

#include "norva/api.h"

#include <string>
#include <string_view>
#include <vector>

/// Dialog templates as data and the state of their controls.
namespace norva {

enum class ControlKind { Static, Edit, Button, Group, Check, Radio, Combo, List, Report, Grid, Progress };

/// Layout node or control of a template. A template holds no pixels: a skin lays the tree out.
struct TemplateNode {
    enum class Kind { Row, Column, Group, Control };

    Kind kind = Kind::Control;
    int id = 0;
    ControlKind control = ControlKind::Static;
    std::string_view label;
    bool startsGroup = false;              ///< radio: the first of its group
    bool multiple = false;                 ///< list, report: several rows can be selected
    bool checkBoxes = false;               ///< report: rows carry a tick box in the first column
    bool readOnly = false;                 ///< edit: shown, not editable
    int maxLength = 0;                     ///< edit: characters at most, 0 for any number
    std::vector<std::string_view> titles;  ///< report: titles of its columns
    std::vector<int> editable;             ///< report: columns whose cells are edited in place
    std::vector<TemplateNode> children;
};

struct DialogTemplate {
    int number = 0;
    std::string_view title;
    int defaultButton = 1;
    TemplateNode root;
};

/// The template of that number, or null while the library is not registered or has none.
NORVA_API DialogTemplate const* FindDialogTemplate(int number);

/// State of one control of an open dialog.
struct CControl {
    TemplateNode const* node = nullptr;
    int id = 0;
    ControlKind kind = ControlKind::Static;
    bool enabled = true;
    bool visible = true;
    bool checked = false;                        ///< check, radio
    std::string text;                            ///< static, edit
    std::vector<std::string> items;              ///< combo, list
    std::vector<std::string> columns;            ///< report, grid: titles
    std::vector<std::vector<std::string>> rows;  ///< report, grid: texts
    std::vector<bool> ticks;                     ///< report with check boxes
    std::vector<int> selected;                   ///< combo (none or one), list, report: rows, ascending
    int caret = -1;                              ///< list, report: row that was acted on last
    int anchor = -1;                             ///< list, report: row of the last plain or Ctrl click
    bool selectedWithModifier = false;  ///< the person's last selection change was made with Shift or Ctrl held
    int column = -1;                    ///< grid: selected column
    int position = 0;                   ///< progress: 0 to 100
    unsigned revision = 0;              ///< grows with every change, so that a skin knows what to redraw

    std::string_view Label() const { return node->label; }
    int RowCount() const {
        return static_cast<int>(kind == ControlKind::Report || kind == ControlKind::Grid ? rows.size() : items.size());
    }
    /// Rows that a move acts on: all selected ones after a choice with Shift or Ctrl, else the one with the caret.
    std::vector<int> ChosenRows() const;
};

}  // namespace norva
