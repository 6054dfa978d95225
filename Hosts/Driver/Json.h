#pragma once

#include "Runtime/Value.h"
#include "UIKit/UIColor.h"
#include "UIKit/UIGeometry.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

class UIImage;
class UITableViewCell;
class UIView;

/// Objects keep their keys in the order in which they were written, which is the order of the documentation.
using Json = nlohmann::ordered_json;

/// What JSON has no form for is an object with one key: {"data": base64}, {"date": seconds since 2001}, {"uid": index},
/// {"real": "nan" | "inf" | "-inf"}. Objects of the platform are what they are for a reader: an image its size, a row
/// its identifier. Of a value that would be longer than 16 MiB, the rest is left out.
Json jsonOf(const Value& value);
Json jsonOf(const std::optional<std::string>& text);
Json jsonOf(const UIColor& color);
Json jsonOf(const std::optional<UIColor>& color);
Json jsonOf(const CGRect& rect);
/// Null for a null image.
Json jsonOf(const std::shared_ptr<UIImage>& image);
/// The view with all views below it; null for a null view.
Json jsonOf(const std::shared_ptr<UIView>& view);
/// The cell with its control and its views.
Json jsonOfCell(const std::shared_ptr<UITableViewCell>& cell);

/// The value that the JSON stands for; nothing when containers nest deeper than any value of a row.
std::optional<Value> valueOf(const Json& json);

/// One line, whatever bytes the texts hold.
std::string lineOf(const Json& json);
