// A style sheet, for the application.
//
// In the default build a syntax error in a sheet ends the process: see common/core/css/Parser.h. In a build without
// hard assertions the message stands on standard error, and the sheet is null.
#pragma once

#include "common/core/css/Stylesheet.h"
#include "platform/NSError.h"
#include "platform/NSURL.h"

template <class T> class NilStyleSheet;

class WQCSSStyleSheet : public wq::Object {
public:
    // Reads UTF-8. Null, and the error set if one is given, where the URL cannot be read as such text; null without an
    // error where the text has a syntax error. Imports are not followed.
    template <class T = WQCSSStyleSheet> static Ref<T> styleSheetWithContentsOfURL_error(const Ref<NSURL>& url, Ref<NSError>* error) {
        return newWithContentsOfURL_error<T>(url, error);
    }
    template <class T = WQCSSStyleSheet> static Ref<T> newWithContentsOfURL_error(const Ref<NSURL>& url, Ref<NSError>* error) {
        return wq::make<T>(&T::initWithContentsOfURL_error, url, error);
    }
    virtual bool initWithContentsOfURL_error(const Ref<NSURL>& url, Ref<NSError>* error);

    // Null where the text has a syntax error, and for null.
    template <class T = WQCSSStyleSheet> static Ref<T> styleSheetWithString(const NSString& text) { return newWithString<T>(text); }
    template <class T = WQCSSStyleSheet> static Ref<T> newWithString(const NSString& text) { return wq::make<T>(&T::initWithString, text); }
    virtual bool initWithString(const NSString& text);

    // Around a sheet of the engine, which is shared.
    template <class T = WQCSSStyleSheet> static Ref<T> newWithCSSStyleSheet(CSS::Stylesheet* sheet) {
        return wq::make<T>(&T::initWithCSSStyleSheet, sheet);
    }
    virtual bool initWithCSSStyleSheet(CSS::Stylesheet* sheet);

    // The engine's, which this object keeps; null around none. Another one does not change what a resolver has taken
    // in.
    CSS::Stylesheet* cssStyleSheet() const { return my.styleSheet.Get(); }
    virtual void setCSSStyleSheet(CSS::Stylesheet* sheet) { my.styleSheet = sheet; }

    template <class T> using Nil = NilStyleSheet<T>;

private:
    struct {
        SharedPtr<CSS::Stylesheet> styleSheet;
    } my;
};

template <class T> class NilStyleSheet : public T {
public:
    void setCSSStyleSheet(CSS::Stylesheet*) override {}
    bool initWithContentsOfURL_error(const Ref<NSURL>&, Ref<NSError>*) override { return false; }
    bool initWithString(const NSString&) override { return false; }
    bool initWithCSSStyleSheet(CSS::Stylesheet*) override { return false; }
};
