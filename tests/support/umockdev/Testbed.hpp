#pragma once
// A umockdev testbed of serial devices: fake sysfs entries and uevents that the real libudev
// reads. Only programs run under umockdev-wrapper (its preload) see them; child processes see
// them too when they inherit the preload and UMOCKDEV_DIR.

#include <map>
#include <string>
#include <vector>

#include <umockdev.h>

namespace tarnwick::testing {

class Testbed {
public:
  Testbed() : bed_(umockdev_testbed_new()) {}
  ~Testbed() { g_object_unref(bed_); }
  Testbed(const Testbed&) = delete;
  Testbed& operator=(const Testbed&) = delete;

  /// A USB device with one interface and a tty beneath it; returns the tty's sysfs path.
  std::string addUSBPort(const std::string& name, const char* vendor, const char* product,
                         const char* productString, const char* serial = nullptr) {
    // A name of its own each time: the testbed keeps a removed device's bus entry.
    const std::string usbName = "usb-" + name + "-" + std::to_string(++plugged_);
    std::vector<const char*> attributes = {"idVendor", vendor, "idProduct", product};
    if (productString) attributes.insert(attributes.end(), {"product", productString});
    if (serial) attributes.insert(attributes.end(), {"serial", serial});
    const std::string usb = add("usb", usbName, "", attributes, {"DEVTYPE", "usb_device"});
    const std::string interface =
        add("usb", usbName + ":1.0", usb, {}, {"DEVTYPE", "usb_interface"});
    const std::string tty = addTTY(name, interface);
    usbDevices_[tty] = usb;
    return tty;
  }

  /// A tty device, beneath `parent` when given; `type` is the serial core's UART type.
  std::string addTTY(const std::string& name, const std::string& parent = "",
                     const char* type = nullptr) {
    const std::string node = "/dev/" + name;
    std::vector<const char*> attributes;
    if (type) attributes = {"type", type};
    return add("tty", name, parent, attributes, {"DEVNAME", node.c_str()});
  }

  std::string addPlatformDevice(const std::string& name) {
    return add("platform", name, "", {}, {});
  }

  void setAttribute(const std::string& device, const char* name, const char* value) {
    umockdev_testbed_set_attribute(bed_, device.c_str(), name, value);
  }

  /// Takes the device away; a USB port goes with its USB device, so it can be plugged in again.
  void unplug(const std::string& device) {
    umockdev_testbed_uevent(bed_, device.c_str(), "remove");
    umockdev_testbed_remove_device(bed_, device.c_str());
    if (auto usb = usbDevices_.find(device); usb != usbDevices_.end()) {
      umockdev_testbed_remove_device(bed_, usb->second.c_str());
      usbDevices_.erase(usb);
    }
  }

  void uevent(const std::string& device, const char* action) {
    umockdev_testbed_uevent(bed_, device.c_str(), action);
  }

private:
  std::string add(const char* subsystem, const std::string& name, const std::string& parent,
                  std::vector<const char*> attributes, std::vector<const char*> properties) {
    attributes.push_back(nullptr);
    properties.push_back(nullptr);
    return take(umockdev_testbed_add_devicev(
        bed_, subsystem, name.c_str(), parent.empty() ? nullptr : parent.c_str(),
        const_cast<gchar**>(attributes.data()), const_cast<gchar**>(properties.data())));
  }

  static std::string take(gchar* text) {
    std::string result = text ? text : "";
    g_free(text);
    return result;
  }

  UMockdevTestbed* bed_;
  int plugged_ = 0;
  /// The USB device above each USB port's tty.
  std::map<std::string, std::string> usbDevices_;
};

} // namespace tarnwick::testing
