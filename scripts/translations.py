#!/usr/bin/env python3
"""Fills resources/translations/{Chinese,English}.ts from the glossary below.

Source texts are a mix of Chinese and English. Chinese.ts maps English sources to
Chinese and keeps Chinese sources as they are; English.ts does the reverse.
Run scripts/update-translations.sh first to pick up new source texts, add the new
pairs to GLOSSARY, then run this; it fails on a source it has no entry for.
"""
import re
import sys
import xml.etree.ElementTree as ET
from pathlib import Path

# source text -> the other language
GLOSSARY = {
    "The device did not take the network settings; it reports %1.": "设备未接受网络设置；设备报告为 %1。",
    # confirmed routes, offline, history
    "%1  %2 output %3: input %4 -> %5  (%6)": "%1  %2 输出 %3：输入 %4 -> %5  （%6）",
    "History": "历史记录",
    "Cancel": "取消",
    "IR": "红外",
    "Not connected: nothing was undone.": "未连接：未撤销任何操作。",
    "Not connected: output %1 was not switched.": "未连接：输出 %1 未切换。",
    "Not connected: the caption cannot be set.": "未连接：无法设置字幕。",
    "Not connected: the device was not changed.": "未连接：设备未更改。",
    "Nothing to undo.": "没有可撤销的操作。",
    "Output %1 did not switch: the device shows input %2.": "输出 %1 未切换：设备显示为输入 %2。",
    "from here": "本机操作",
    "reported by the device": "设备报告",
    # factory reset confirmation
    "Reset the device at %1 to its factory settings? Its routes and settings are lost.": "将地址为 %1 的设备恢复出厂设置？设备上的切换和设置都将丢失。",
    "Factory reset": "恢复出厂设置",
    # caption and OSD dialog
    "Background": "背景",
    "Caption Setting": "字幕设置",
    "Colours": "颜色",
    "Content": "内容",
    "Direction": "方向",
    "Display": "显示效果",
    "Erase": "擦除",
    "Font": "字体",
    "Left": "向左",
    "Right": "向右",
    "Out%1": "输出%1",
    "Output": "输出",
    "Picture": "图片",
    "Position": "位置",
    "Show": "显示",
    "Speed": "速度",
    "Text": "文字",
    "Text colour": "文字颜色",
    "Upload picture": "上传图片",
    "Upload text": "上传文字",
    "[Input%1]": "[输入%1]",
    "台标字幕文件大小不能超过4K!": "The size of the logo subtitle file cannot exceed 4KB!",
    "支持图片文件 (*.bmp *.png *.jpg *.jpeg *.tga *.tiff);; 所有文件(*.*);;": "Supported image files (*.bmp *.png *.jpg *.jpeg *.tga *.tiff);; All files(*.*);;",
    "请选择图片路径": "Please select the image path",
    "错误": "Error",
    # per-port setting dialogs
    "Input Graphics test": "输入测试图",
    "OutPut Graphics test": "输出测试图",
    "[InChannel%1]": "[输入通道%1]",
    "[OutChannel%1]": "[输出通道%1]",
    "By pass": "直通",
    "RGB stripe": "RGB彩条",
    "16 Gray Scales": "16级灰度",
    "32 Gray Scales": "32级灰度",
    "64 Gray Scales": "64级灰度",
    "Red Grid": "红色网格",
    "Green Grid": "绿色网格",
    "Blue Grid": "蓝色网格",
    "White Grid": "白色网格",
    "Horizon Scroll": "水平滚动",
    "Vertical Scroll": "垂直滚动",
    "Pure Color": "纯色",
    "EDID Setting [InChannel%1]": "EDID设置 [输入通道%1]",
    "OutPut Port %1": "输出端口 %1",
    "Copy from": "复制来源",
    "Copy": "复制",
    "EDID file": "EDID文件",
    "Browse": "浏览",
    "Upload": "上传",
    "请选择更新文件": "Please select the update file",
    "支持文件 (*.bin);; 所有文件(*.*);;": "Supported files (*.bin);; All files(*.*);;",
    "File is empty": "文件为空",
    "error": "错误",
    "Volume Setting [InChannel%1]": "音量设置 [输入通道%1]",
    "Volume": "音量",
    # login
    "Orvex系列视频切换软件": "ORVEX SERIES VIDEO SWITCHING SOFTWARE",
    "Login": "登录",
    "UserName": "用户名",
    "PassWord": "密码",
    "Remember me": "记住密码",
    "Connet Fail!": "连接失败！",
    "username or password error!": "用户名或密码错误！",
    "connect successful but software error!": "连接成功，但软件出错！",
    "connect fail!": "连接失败！",
    "设备连接设置": "Device Connection",
    "Device IP:": "设备IP：",
    "Port:": "端口：",
    "OK": "确定",
    "提示": "Notice",
    # user management
    "User Management": "用户管理",
    "User List": "用户列表",
    "ID": "编号",
    "User Info": "用户信息",
    "UserName:": "用户名：",
    "PassWord:": "密码：",
    "Repeat:": "确认密码：",
    "Add": "添加",
    "Edit": "编辑",
    "Delete": "删除",
    "Save": "保存",
    "two password not equation!": "两次输入的密码不一致！",
    # file uploads
    "传输文件过程网络发生错误！请重新上传": "An error occurred during the transmission of files, please re-upload",
    "传输文件端口连接发生错误！": "An error occurred in the connection of the file transfer port",
    "NetWork Error": "网络错误",
    # port naming
    "重命名": "Rename",
    "新名称:": "New Name:",
    "cancel": "取消",
    # main window
    "Usermanage": "用户管理",
    "Connect Setting": "连接设置",
    "Connecting": "切换用户",
    "Setting": "设置",
    "免登录": "No login required",
    "Signal list": "信号列表",
    "Video": "视频",
    "Joint": "拼接",
    "Audio": "音频",
    "模拟音频": "Analog Audio",
    "HDMI音频": "HDMI Audio",
    "数字音频": "Digital Audio",
    "音频模式": "Audio Mode",
    "清除": "Clear",
    "Infared": "红外",
    "NetWork Setting": "网络设置",
    "Ip": "IP地址",
    "Gateway": "网关",
    "Subnet": "子网掩码",
    "Mac": "MAC地址",
    "confirm": "确认",
    "Factory Reset": "恢复出厂设置",
    "OtherSetting": "其他设置",
    "Caption": "字幕",
    "CaptionSetting": "字幕设置",
    "Language": "语言",
    "Buzzer": "蜂鸣器",
    "UserManager Setting": "用户管理设置",
    "About": "关于",
    "Software Version:": "软件版本：",
    "Device    Version:": "设备    版本：",
    "Administrator": "管理员",
    "Output %1": "输出 %1",
    "Input %1": "输入 %1",
    "Audio %1": "音频 %1",
    "Rename(F2)": "重命名(F2)",
    "OSD Setting": "台标设置",
    "GraphicsTest": "图形测试",
    "Graphics Test": "图形测试",
    "Volume Setting": "音量设置",
    "Edid": "EDID",
    "Resolution": "分辨率",
    "Minimize": "最小化",
    "Maximize": "最大化",
    "Close": "关闭",
    "refrensh": "刷新",
    "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting":
        "OrvexMatrixControl  用户:%3  IP:%1  端口:%2 正在连接",
    "OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected":
        "OrvexMatrixControl  用户:%3   IP:%1  端口:%2  已连接",
    "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected":
        "OrvexMatrixControl  用户:%3  IP:%1  端口:%2 已断开",
    "OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connected":
        "OrvexMatrixControl  用户:%3  IP:%1  端口:%2 已连接",
    # project.db that cannot be read or written
    "Database Error": "数据库错误",
    "The database %1 is locked by another program. Accounts and port names can be neither read nor saved until it is released.":
        "数据库 %1 被其他程序锁定。在其释放之前，账户和端口名称既不能读取也不能保存。",
    "The database %1 cannot be read: it is damaged or not a database. Accounts and port names can be neither read nor saved.":
        "无法读取数据库 %1：文件已损坏或不是数据库。账户和端口名称既不能读取也不能保存。",
    "account database unreadable!": "账户数据库无法读取！",
    "The new name could not be saved in %1; the old name is kept.": "新名称无法保存到 %1，保留原名称。",
    "the change could not be saved!": "更改未能保存！",
    # presets page
    "Presets": "预设",
    "Slot": "预设位",
    "Name": "名称",
    "Name:": "名称:",
    "Preset name": "预设名称",
    "Preset %1": "预设 %1",
    "Recall": "调用",
    "Rename": "重命名",
    "Save preset": "保存预设",
    "Recall preset": "调用预设",
    "The device keeps the routing of each slot; the names are kept on this computer.":
        "每个预设位的切换状态保存在设备上，名称保存在本机。",
    'Slot %1 holds "%2". Replace it with the current routing?': "预设位 %1 已保存“%2”。用当前的切换状态替换它吗？",
    "The device is not connected; slot %1 was not saved.": "设备未连接，预设位 %1 未保存。",
    "The device is not connected; slot %1 was not recalled.": "设备未连接，预设位 %1 未调用。",
    "The routing was saved in slot %1 on the device, but its name could not be saved in %2.":
        "切换状态已保存到设备的预设位 %1，但名称无法保存到 %2。",
    "The name could not be removed from %1.": "无法从 %1 删除该名称。",
}

CJK = re.compile(r"[\u3000-\u9fff\uff00-\uffef]")


def fill(path: Path, want_chinese: bool) -> list:
    tree = ET.parse(path)
    # lupdate refuses to update a file whose language it does not know.
    tree.getroot().set("language", "zh_CN" if want_chinese else "en_US")
    missing = []
    for message in tree.iter("message"):
        source = message.findtext("source")
        translation = message.find("translation")
        source_is_chinese = bool(CJK.search(source))
        if source_is_chinese == want_chinese:
            text = source
        elif source in GLOSSARY:
            text = GLOSSARY[source]
        else:
            missing.append(source)
            continue
        translation.text = text
        translation.attrib.pop("type", None)
    tree.write(path, encoding="utf-8", xml_declaration=True)
    # Keep the DOCTYPE line lupdate writes.
    body = path.read_text(encoding="utf-8")
    if "<!DOCTYPE TS>" not in body:
        body = body.replace("?>\n", "?>\n<!DOCTYPE TS>\n", 1)
        path.write_text(body, encoding="utf-8")
    return missing


def main() -> int:
    root = Path(__file__).resolve().parent.parent / "resources" / "translations"
    missing = fill(root / "Chinese.ts", True) + fill(root / "English.ts", False)
    for source in sorted(set(missing)):
        print(f"no translation for: {source!r}", file=sys.stderr)
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
