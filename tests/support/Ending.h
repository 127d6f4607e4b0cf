#pragma once

#include <VxUtil/vxJson.h>

#include <exception>
#include <string>
#include <typeinfo>

#include "structure/detail/MsgpackErrors.h"

/// Runs `call`. Returns its result as text, or the class of its exception.
template <typename Call>
std::string EndingOf(const Call& call) {
    try {
        return call() ? "true" : "false";
    } catch (const msgpack::insufficient_bytes&) {
        return "insufficient_bytes";
    } catch (const msgpack::parse_error&) {
        return "parse_error";
    } catch (const msgpack::type_error&) {
        return "type_error";
    } catch (const vxJson::Error& error) {
        return std::string("Error: ") + error.what();
    } catch (const std::exception& error) {
        return typeid(error).name() + std::string(": ") + error.what();
    }
}
