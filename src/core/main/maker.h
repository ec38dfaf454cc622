// Where the program's maker is found.
#pragma once

namespace quorvale {

inline constexpr char kMakerHomePage[] = "https://www.tarnwick.example/";
inline constexpr char kMakerProductsPage[] = "https://www.tarnwick.example/products";
inline constexpr char kMakerSupportMail[] = "mailto:support@tarnwick.example";

}  // namespace quorvale
