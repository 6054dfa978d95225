#include "Driver/Json.h"

#include "PreferencesUI/PSTableCell.h"
#include "UIKit/UIViewController.h"

#include <cmath>

namespace {

constexpr int greatestDepth = 64;
/// What stands in many places of a value stands in as many places of its JSON, so the length of that has a limit. Each
/// value counts with its text, data or keys, and with some bytes besides.
constexpr std::size_t longestJson = std::size_t { 16 } << 20;
constexpr std::size_t bytesBesides = 1000;
constexpr std::string_view base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string base64Of(const Bytes& data)
{
    std::string text;
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, data.size() - i);
        unsigned bits = 0;
        for (std::size_t k = 0; k < 3; ++k)
            bits = bits << 8 | (k < count ? data[i + k] : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= count ? base64Alphabet[bits >> (18 - 6 * k) & 0x3F] : '=';
    }
    return text;
}

Json jsonOfReal(double real)
{
    if (std::isnan(real))
        return { { "real", "nan" } };
    if (std::isinf(real))
        return { { "real", real > 0 ? "inf" : "-inf" } };
    return real;
}

Json jsonOfObject(const std::shared_ptr<NSObject>& object)
{
    if (const auto row = std::dynamic_pointer_cast<PSSpecifier>(object))
        return { { "class", row->isa().name() }, { "identifier", jsonOf(row->identifier()) },
            { "name", jsonOf(row->name()) } };
    if (const auto image = std::dynamic_pointer_cast<UIImage>(object))
        return jsonOf(image);
    if (const auto item = std::dynamic_pointer_cast<UIBarButtonItem>(object))
        return { { "class", item->isa().name() }, { "image", jsonOf(item->image()) },
            { "style", static_cast<int>(item->style()) }, { "action", item->action() } };
    return { { "class", object->isa().name() } };
}

Json jsonOfFont(const UIFont& font)
{
    return { { "name", font.name }, { "size", font.pointSize } };
}

Json jsonOfRun(const NSAttributedString::Run& run)
{
    const TextAttributes& attributes = run.attributes;
    Json json { { "range", { run.range.location, run.range.length } } };
    json["font"] = attributes.font ? jsonOfFont(*attributes.font) : Json();
    json["lineSpacing"] = attributes.paragraphStyle ? Json(attributes.paragraphStyle->lineSpacing) : Json();
    json["alignment"] =
        attributes.paragraphStyle ? Json(static_cast<int>(attributes.paragraphStyle->alignment)) : Json();
    // Present and null says more than absent here.
    if (attributes.kern)
        json["kern"] = jsonOf(*attributes.kern);
    if (attributes.attachment)
        json["attachment"] = { { "image", jsonOf(attributes.attachment->image) } };
    return json;
}

Json jsonOfAttributed(const std::shared_ptr<NSAttributedString>& text)
{
    if (!text)
        return nullptr;
    Json runs = Json::array();
    for (const auto& run : text->runs())
        runs.push_back(jsonOfRun(run));
    return { { "string", text->string() }, { "runs", std::move(runs) } };
}

void addLabel(Json& json, const UILabel* label)
{
    json["text"] = label ? jsonOf(label->text()) : Json();
    json["textColor"] = label ? jsonOf(label->textColor()) : Json();
    json["alignment"] = label ? Json(static_cast<int>(label->textAlignment())) : Json();
    json["lines"] = label ? Json(label->numberOfLines()) : Json();
    json["font"] = label ? jsonOfFont(label->font()) : Json();
    json["attributed"] = label ? jsonOfAttributed(label->attributedText()) : Json();
}

Json jsonOfControl(const std::shared_ptr<UIControl>& control)
{
    if (!control)
        return nullptr;
    const auto* toggle = dynamic_cast<const UISwitch*>(control.get());
    const auto* slider = dynamic_cast<const UISlider*>(control.get());
    const auto* segmentable = dynamic_cast<const PSSegmentableSlider*>(control.get());
    Json json { { "class", control->isa().name() } };
    json["value"] = toggle ? Json(toggle->isOn()) : slider ? Json(double { slider->value() }) : Json();
    json["min"] = slider ? Json(double { slider->minimumValue() }) : Json();
    json["max"] = slider ? Json(double { slider->maximumValue() }) : Json();
    json["segments"] = segmentable && segmentable->segmentCount() > 0 ? Json(segmentable->segmentCount()) : Json();
    json["continuous"] = slider ? Json(slider->isContinuous()) : Json();
    json["onTint"] = toggle ? jsonOf(toggle->onTintColor()) : Json();
    json["tint"] = jsonOf(control->tintColor());
    json["frame"] = jsonOf(control->frame());
    return json;
}

std::optional<Value> valueAtDepth(const Json& json, int depth)
{
    if (depth > greatestDepth)
        return std::nullopt;
    if (json.is_boolean())
        return Value(json.get<bool>());
    if (json.is_number_unsigned())
        return Value(json.get<unsigned long>());
    if (json.is_number_integer())
        return Value(json.get<long>());
    if (json.is_number())
        return Value(json.get<double>());
    if (json.is_string())
        return Value(json.get<std::string>());
    if (json.is_array()) {
        Array elements;
        for (const Json& element : json) {
            auto value = valueAtDepth(element, depth + 1);
            if (!value)
                return std::nullopt;
            elements.push_back(std::move(*value));
        }
        return Value(std::move(elements));
    }
    if (json.is_object()) {
        Dictionary entries;
        for (const auto& [key, element] : json.items()) {
            auto value = valueAtDepth(element, depth + 1);
            if (!value)
                return std::nullopt;
            entries.insert_or_assign(key, std::move(*value));
        }
        return Value(std::move(entries));
    }
    return Value();
}

std::size_t lengthOf(const Value& value)
{
    if (value.string())
        return bytesBesides + value.string()->size();
    return bytesBesides + (value.data() ? value.data()->size() : 0);
}

/// Takes the length of the value from what is left; null where nothing is.
Json jsonWithin(std::size_t& left, const Value& value)
{
    left -= std::min(lengthOf(value), left);
    if (left == 0)
        return nullptr;
    switch (value.kind()) {
    case Value::Kind::Null:
        return nullptr;
    case Value::Kind::Boolean:
        return value.boolean();
    case Value::Kind::Integer:
        return value.integer();
    case Value::Kind::Unsigned:
        return value.unsignedInteger();
    case Value::Kind::Real:
        return jsonOfReal(value.real());
    case Value::Kind::String:
        return *value.string();
    case Value::Kind::Data:
        return { { "data", base64Of(*value.data()) } };
    case Value::Kind::Date:
        return { { "date", jsonOfReal(value.date().secondsSinceReferenceDate) } };
    case Value::Kind::Uid:
        return { { "uid", value.uid().index } };
    case Value::Kind::Array: {
        Json json = Json::array();
        for (const Value& element : *value.array()) {
            if (left == 0)
                break;
            json.push_back(jsonWithin(left, element));
        }
        return json;
    }
    case Value::Kind::Dictionary: {
        Json json = Json::object();
        for (const auto& [key, entry] : *value.dictionary()) {
            left -= std::min(key.size(), left);
            if (left == 0)
                break;
            json[key] = jsonWithin(left, entry);
        }
        return json;
    }
    case Value::Kind::Object:
        return jsonOfObject(value.object());
    case Value::Kind::Class:
        return value.classObject()->name();
    }
    return nullptr;
}

} // namespace

Json jsonOf(const Value& value)
{
    std::size_t left = longestJson;
    return jsonWithin(left, value);
}

Json jsonOf(const std::optional<std::string>& text)
{
    return text ? Json(*text) : Json();
}

Json jsonOf(const UIColor& color)
{
    return { color.red, color.green, color.blue, color.alpha };
}

Json jsonOf(const std::optional<UIColor>& color)
{
    return color ? jsonOf(*color) : Json();
}

Json jsonOf(const CGRect& rect)
{
    return { rect.x, rect.y, rect.width, rect.height };
}

Json jsonOf(const std::shared_ptr<UIImage>& image)
{
    if (!image)
        return nullptr;
    return { { "size", { image->size().width, image->size().height } },
        { "template", image->renderingMode() == UIImageRenderingMode::AlwaysTemplate } };
}

Json jsonOf(const std::shared_ptr<UIView>& view)
{
    if (!view)
        return nullptr;
    Json json;
    json["class"] = view->isa().name();
    json["tag"] = view->tag();
    json["frame"] = jsonOf(view->frame());
    json["hidden"] = view->isHidden();
    json["alpha"] = view->alpha();
    json["background"] = jsonOf(view->backgroundColor());
    json["tint"] = jsonOf(view->tintColor());
    addLabel(json, dynamic_cast<const UILabel*>(view.get()));
    const auto* picture = dynamic_cast<const UIImageView*>(view.get());
    json["image"] = picture ? jsonOf(picture->image()) : Json();
    json["cornerRadius"] = view->layer().cornerRadius;
    json["clips"] = view->clipsToBounds();
    json["subviews"] = Json::array();
    for (const auto& subview : view->subviews())
        json["subviews"].push_back(jsonOf(subview));
    return json;
}

Json jsonOfCell(const std::shared_ptr<UITableViewCell>& cell)
{
    const auto controlCell = std::dynamic_pointer_cast<PSControlTableCell>(cell);
    Json json { { "class", cell->isa().name() } };
    json["style"] = static_cast<int>(cell->style());
    json["accessory"] = static_cast<int>(cell->accessoryType());
    json["selection"] = static_cast<int>(cell->selectionStyle());
    json["interaction"] = cell->isUserInteractionEnabled();
    json["frame"] = jsonOf(cell->frame());
    json["background"] = jsonOf(cell->backgroundColor());
    json["control"] = jsonOfControl(controlCell ? controlCell->control() : nullptr);
    json["textLabel"] = jsonOf(std::shared_ptr<UIView>(cell->textLabel()));
    json["detailTextLabel"] = jsonOf(std::shared_ptr<UIView>(cell->detailTextLabel()));
    json["imageView"] = jsonOf(std::shared_ptr<UIView>(cell->imageView()));
    json["subviews"] = Json::array();
    for (const auto& subview : cell->subviews())
        json["subviews"].push_back(jsonOf(subview));
    return json;
}

std::optional<Value> valueOf(const Json& json)
{
    return valueAtDepth(json, 0);
}

std::string lineOf(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}
