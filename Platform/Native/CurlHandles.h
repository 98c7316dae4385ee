#pragma once

#include <curl/curl.h>

#include <memory>

namespace korvane {

/// Frees a libcurl object when its holder goes.
template <auto free>
struct CurlDeleter {
    template <class Object>
    void operator()(Object* object) const {
        free(object);
    }
};

using CurlEasy = std::unique_ptr<CURL, CurlDeleter<&curl_easy_cleanup>>;
using CurlMulti = std::unique_ptr<CURLM, CurlDeleter<&curl_multi_cleanup>>;
using CurlList = std::unique_ptr<curl_slist, CurlDeleter<&curl_slist_free_all>>;

} // namespace korvane
