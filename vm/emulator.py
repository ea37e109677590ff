# SPDX-License-Identifier: MIT
"""The machines that are emulated, as QEMU's command lines.

There are four kinds. `strict`, `relaxed` and `wide` are one machine with a BIOS and IDE disks. Its
kernel is one of 32 bits, or, with `wide`, of 64. Except with `strict`, the kernel lets the library read
the mebibyte of physical memory after the BIOS, which kernels otherwise refuse. `uefi` is a machine of
today: UEFI firmware, PCI Express, a SATA disk and an NVMe disk, and a kernel of 64 bits that opens
nothing.
"""

KINDS = ("strict", "relaxed", "wide", "uefi")
RELAXED = ["memmap=1M$0x100000", "iomem=relaxed"]


def common(port, monitor):
    return ["-accel", "tcg", "-m", "512", "-display", "none", "-no-reboot", "-nic", "none",
            "-serial", "stdio", "-monitor", f"unix:{monitor},server=on,wait=off",
            # Connects again until the simulator, started at the same time, listens.
            "-chardev", f"socket,id=ipmi0,host=127.0.0.1,port={port},reconnect=1",
            "-device", "ipmi-bmc-extern,id=bmc0,chardev=ipmi0",
            "-device", "isa-ipmi-kcs,bmc=bmc0"]


def kernel(machine, width, extra):
    # A busy computer emulates the timer too slowly for the kernel's check of it.
    parameters = ["console=ttyS0", "quiet", "panic=-1", "no_timer_check", *extra]
    return ["-kernel", machine / f"vmlinuz{width}", "-initrd", machine / f"initrd{width}",
            "-append", " ".join(parameters)]


def drive(number, disk):
    """A disk without a controller. The first one, which holds the system, is never written."""
    return ["-drive", f"if=none,id=disk{number},format=raw,file={disk}"
                      + (",snapshot=on" if number == 0 else "")]


BIOS_TABLE = [
    "type=1,manufacturer=Vessel & Marrow,product=Ketch 3100,version=Rev 2",
    "type=2,manufacturer=Vessel & Marrow,product=KB-31 Mainboard,serial=KB31B0071,version=B",
    "type=4,manufacturer=Vessel & Marrow,version=Model 1,max-speed=2400,current-speed=1800",
    "type=8,internal_reference=J4,external_reference=Serial A,connector_type=0x08,port_type=0x09",
    "type=8,internal_reference=J7,external_reference=LAN 1,connector_type=0x0B,port_type=0x1F",
    "type=17,loc_pfx=DIMM,bank=Bank 1,manufacturer=Tarn Memory,speed=266",
]
# Disk by disk: primary master and slave, secondary master and slave.
IDE_DISKS = [("Root Disk", "RT00001"), ("Ketch ST3-8064", "KST3-00815-7"),
             ("Payload Disk", "PL00001"), ("Results Disk", "RS00001")]


def machine_with_bios(machine, disks, kind):
    width = "64" if kind == "wide" else "32"
    words = ["-M", "pc", "-smp", "2", *kernel(machine, width, RELAXED if kind != "strict" else []),
             # More for the PCI report: a bridge with a device below it, and several interfaces.
             "-device", "piix3-usb-uhci", "-device", "qemu-xhci", "-device", "pci-serial",
             "-device", "pci-bridge,id=bridge1,chassis_nr=1",
             "-device", "e1000,bus=bridge1,addr=3", "-device", "rtl8139,bus=bridge1,addr=5"]
    for structure in BIOS_TABLE:
        words += ["-smbios", structure]
    for number, (disk, (model, serial)) in enumerate(zip(disks, IDE_DISKS)):
        words += [*drive(number, disk), "-device",
                  f"ide-hd,drive=disk{number},bus=ide.{number // 2},unit={number % 2},"
                  f"model={model},serial={serial}"]
    return words


# The firmware drops the first port, whose handle the emulator has given to the BIOS as well.
UEFI_TABLE = [
    "type=0,vendor=Vessel & Marrow,version=UV 1.20,date=03/02/2026,release=1.20,uefi=on",
    "type=1,manufacturer=Vessel & Marrow,product=Cutter 5200,version=Rev 1,serial=CU52000042",
    "type=2,manufacturer=Vessel & Marrow,product=CB-52 Mainboard,serial=CB52A0007,version=A",
    "type=4,sock_pfx=CPU,manufacturer=Vessel & Marrow,version=Model 9,max-speed=3600,"
    "current-speed=2600",
    "type=8,internal_reference=J0",
    "type=8,internal_reference=J1,external_reference=USB 1,connector_type=0x12,port_type=0x10",
    "type=8,internal_reference=J2,external_reference=LAN 1,connector_type=0x0B,port_type=0x1F",
    "type=17,loc_pfx=DIMM,bank=Bank 1,manufacturer=Tarn Memory,serial=TM000117,part=TM-32G,"
    "speed=3200",
]


def machine_with_uefi(machine, disks):
    root, sata, payload, results, nvme = (drive(number, disk) for number, disk in enumerate(disks))
    words = ["-M", "q35,smbios-entry-point-type=64", "-smp", "2,sockets=2",
             "-drive", f"if=pflash,unit=0,format=raw,readonly=on,file={machine}/OVMF_CODE_4M.fd",
             "-drive", f"if=pflash,unit=1,format=raw,snapshot=on,file={machine}/OVMF_VARS_4M.fd",
             # The emulated controller fails queued commands that follow one that it does not know.
             *kernel(machine, "64", ["libata.force=noncq"]),
             *root, "-device", "ide-hd,bus=ide.0,drive=disk0,model=Root Disk,serial=RT00001",
             *sata, "-device", "ide-hd,bus=ide.1,drive=disk1,model=Cutter SA-8064 of 8 GB,"
                               "serial=CSA8-00312-4,ver=SA-1.07",
             # A bus for each slot, as PCI Express has it, and one of another root, far away.
             "-device", "pcie-root-port,id=slot1,chassis=1",
             "-device", "pcie-root-port,id=slot2,chassis=2",
             "-device", "pcie-root-port,id=slot3,chassis=3",
             "-device", "pxb-pcie,id=second,bus_nr=64",
             "-device", "pcie-root-port,id=slot4,chassis=4,bus=second",
             *nvme, "-device", "nvme,bus=slot1,drive=disk4,serial=CNV12-00077-1",
             "-device", "e1000e,bus=slot2,romfile=",
             "-device", "pcie-pci-bridge,id=bridge1,bus=slot3",
             "-device", "rtl8139,bus=bridge1,addr=5,romfile=",
             "-device", "e1000e,bus=slot4,romfile=",
             "-device", "qemu-xhci,bus=pcie.0", "-device", "pci-serial,bus=pcie.0",
             *payload, "-device", "virtio-blk-pci,bus=pcie.0,drive=disk2,serial=PL00001",
             *results, "-device", "virtio-blk-pci,bus=pcie.0,drive=disk3,serial=RS00001"]
    for structure in UEFI_TABLE:
        words += ["-smbios", structure]
    return words


def command(machine, disks, port, monitor, kind):
    """The emulator of a machine. `disks` are the system's, one for tests, the payload's, the one
    that takes the results and, for `uefi`, one for NVMe."""
    wide = kind in ("wide", "uefi")
    words = ["qemu-system-x86_64" if wide else "qemu-system-i386", *common(port, monitor)]
    words += (machine_with_uefi(machine, disks) if kind == "uefi"
              else machine_with_bios(machine, disks, kind))
    return [str(word) for word in words]
