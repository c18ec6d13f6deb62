#pragma once

#include "norva/controls.h"

#include <initializer_list>
#include <vector>

/// Short forms for writing dialog templates down as data.
namespace norva::templates {

TemplateNode Row(std::initializer_list<TemplateNode> children);
TemplateNode Column(std::initializer_list<TemplateNode> children);
TemplateNode Group(int id, std::string_view label, std::initializer_list<TemplateNode> children);
TemplateNode Static(int id, std::string_view text);
TemplateNode Edit(int id, std::string_view label, int maxLength = 0);
TemplateNode ReadOnlyEdit(int id, std::string_view label);
TemplateNode Button(int id, std::string_view label);
TemplateNode Check(int id, std::string_view label);
TemplateNode Radio(int id, std::string_view label, bool startsGroup = false);
TemplateNode Combo(int id, std::string_view label);
TemplateNode List(int id, std::string_view label, bool multiple = false);
/// A list with columns, of which several rows can be selected; the cells of the columns `editable` can be edited.
TemplateNode Report(int id, std::string_view label, std::initializer_list<std::string_view> titles, bool checkBoxes,
                    std::initializer_list<int> editable);
TemplateNode Grid(int id, std::string_view label);
TemplateNode Progress(int id, std::string_view label);

}  // namespace norva::templates
