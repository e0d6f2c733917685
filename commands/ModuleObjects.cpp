/// The module-level objects, in the one file in which the order of their making is certain: they are made at load from
/// the top of this file to its end, and destroyed at unload in the reverse order.
#include "projection/Base64.h"

const std::string s_base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
