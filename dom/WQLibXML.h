// The start-up of the library and the hooks through which libxml2 tells it of every node.
//
// Nobody has to call the start-up: the first use of any class of this folder runs it, on the thread
// that all work on documents belongs to from then on. It installs libxml2's hooks for new and freed
// nodes and for errors, and they stay installed.
#pragma once

#include "platform/Object.h"

struct _xmlNode;
struct _xmlError;

// Runs once; further calls do nothing. Loads the resource "catalog.xml" if there is one.
void WQLibXMLInit();

// New nodes get wrappers while this is true. Those who switch it off restore what they got back.
extern bool gRegisterNode;
bool setRegisterNode(bool value);  // returns the previous value

// The last element whose wrapper was made by the hook and whose class is not settled yet; or null.
extern _xmlNode* gCheckNode;
// Settles it: asks the element's document for the class of its wrapper. An element has no
// namespace yet when libxml2 tells of it, so its class has to wait.
void checkNode();

// The classes of wrappers made by the hook. The first use of WQXMLDocument sets them; an
// application may set others after that. A class that is no WQXMLNode leaves nodes without wrapper: a
// walk over siblings ends at such a node, and nothing removes it but the end of its parent.
extern const wq::Class* DefaultElementClass;  // WQXMLElement
extern const wq::Class* DefaultAttrClass;     // WQXMLAttr
extern const wq::Class* DefaultTextClass;     // WQXMLText
extern const wq::Class* DefaultNodeClass;     // WQXMLNode: comments, CDATA sections and all others

// The hooks themselves.
void xmlRegisterNode(_xmlNode* node);
void xmlDeregisterNode(_xmlNode* node);

// libxml2's error callback. Raises "XML Exception" with the message as reason, for warnings too.
// While one of this library's own calls into libxml2 runs, the first error is kept, the parser
// builds nothing more, and the exception leaves that call when libxml2 has returned. In the reason "%%" is one
// percent sign and "%@" the text of null; everything else stands as libxml2 wrote it.
void wqStructuredErrorFunc(void* context, _xmlError* error);

// Does nothing: the callback of a scan of identifiers.
void printIDHashEntry(void* payload, void* data, const unsigned char* name);
