#include "ui/template_builders.h"

namespace norva::templates {

namespace {

TemplateNode Box(TemplateNode::Kind kind, std::initializer_list<TemplateNode> children) {
    TemplateNode node;
    node.kind = kind;
    node.children = children;
    return node;
}

TemplateNode Control(ControlKind kind, int id, std::string_view label) {
    TemplateNode node;
    node.id = id;
    node.control = kind;
    node.label = label;
    return node;
}

}  // namespace

TemplateNode Row(std::initializer_list<TemplateNode> children) {
    return Box(TemplateNode::Kind::Row, children);
}

TemplateNode Column(std::initializer_list<TemplateNode> children) {
    return Box(TemplateNode::Kind::Column, children);
}

TemplateNode Group(int id, std::string_view label, std::initializer_list<TemplateNode> children) {
    TemplateNode node = Control(ControlKind::Group, id, label);
    node.kind = TemplateNode::Kind::Group;
    node.children = children;
    return node;
}

TemplateNode Static(int id, std::string_view text) {
    return Control(ControlKind::Static, id, text);
}

TemplateNode Edit(int id, std::string_view label, int maxLength) {
    TemplateNode node = Control(ControlKind::Edit, id, label);
    node.maxLength = maxLength;
    return node;
}

TemplateNode ReadOnlyEdit(int id, std::string_view label) {
    TemplateNode node = Control(ControlKind::Edit, id, label);
    node.readOnly = true;
    return node;
}

TemplateNode Button(int id, std::string_view label) {
    return Control(ControlKind::Button, id, label);
}

TemplateNode Check(int id, std::string_view label) {
    return Control(ControlKind::Check, id, label);
}

TemplateNode Radio(int id, std::string_view label, bool startsGroup) {
    TemplateNode node = Control(ControlKind::Radio, id, label);
    node.startsGroup = startsGroup;
    return node;
}

TemplateNode Combo(int id, std::string_view label) {
    return Control(ControlKind::Combo, id, label);
}

TemplateNode List(int id, std::string_view label, bool multiple) {
    TemplateNode node = Control(ControlKind::List, id, label);
    node.multiple = multiple;
    return node;
}

TemplateNode Report(int id, std::string_view label, std::initializer_list<std::string_view> titles, bool checkBoxes,
                    std::initializer_list<int> editable) {
    TemplateNode node = Control(ControlKind::Report, id, label);
    node.multiple = true;
    node.titles = titles;
    node.checkBoxes = checkBoxes;
    node.editable = editable;
    return node;
}

TemplateNode Grid(int id, std::string_view label) {
    return Control(ControlKind::Grid, id, label);
}

TemplateNode Progress(int id, std::string_view label) {
    return Control(ControlKind::Progress, id, label);
}

}  // namespace norva::templates
