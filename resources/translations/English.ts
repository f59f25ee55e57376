<?xml version='1.0' encoding='utf-8'?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>AboutPage</name>
    <message>
        <source>Software Version:</source>
        <translation>Software Version:</translation>
    </message>
    <message>
        <source>Device    Version:</source>
        <translation>Device    Version:</translation>
    </message>
</context>
<context>
    <name>AudioPage</name>
    <message>
        <source>模拟音频</source>
        <translation>Analog Audio</translation>
    </message>
    <message>
        <source>HDMI音频</source>
        <translation>HDMI Audio</translation>
    </message>
</context>
<context>
    <name>EdidSettingDilog</name>
    <message>
        <source>EDID Setting [InChannel%1]</source>
        <translation>EDID Setting [InChannel%1]</translation>
    </message>
    <message>
        <source>OutPut Port %1</source>
        <translation>OutPut Port %1</translation>
    </message>
    <message>
        <source>Copy from</source>
        <translation>Copy from</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>EDID file</source>
        <translation>EDID file</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Browse</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>请选择更新文件</source>
        <translation>Please select the update file</translation>
    </message>
    <message>
        <source>支持文件 (*.bin);; 所有文件(*.*);;</source>
        <translation>Supported files (*.bin);; All files(*.*);;</translation>
    </message>
    <message>
        <source>File is empty</source>
        <translation>File is empty</translation>
    </message>
    <message>
        <source>error</source>
        <translation>error</translation>
    </message>
</context>
<context>
    <name>GraphicsTestDialog</name>
    <message>
        <source>By pass</source>
        <translation>By pass</translation>
    </message>
    <message>
        <source>RGB stripe</source>
        <translation>RGB stripe</translation>
    </message>
    <message>
        <source>16 Gray Scales</source>
        <translation>16 Gray Scales</translation>
    </message>
    <message>
        <source>32 Gray Scales</source>
        <translation>32 Gray Scales</translation>
    </message>
    <message>
        <source>64 Gray Scales</source>
        <translation>64 Gray Scales</translation>
    </message>
    <message>
        <source>Red Grid</source>
        <translation>Red Grid</translation>
    </message>
    <message>
        <source>Green Grid</source>
        <translation>Green Grid</translation>
    </message>
    <message>
        <source>Blue Grid</source>
        <translation>Blue Grid</translation>
    </message>
    <message>
        <source>White Grid</source>
        <translation>White Grid</translation>
    </message>
    <message>
        <source>Horizon Scroll</source>
        <translation>Horizon Scroll</translation>
    </message>
    <message>
        <source>Vertical Scroll</source>
        <translation>Vertical Scroll</translation>
    </message>
    <message>
        <source>Pure Color</source>
        <translation>Pure Color</translation>
    </message>
    <message>
        <source>Input Graphics test</source>
        <translation>Input Graphics test</translation>
    </message>
    <message>
        <source>OutPut Graphics test</source>
        <translation>OutPut Graphics test</translation>
    </message>
    <message>
        <source>[InChannel%1]</source>
        <translation>[InChannel%1]</translation>
    </message>
    <message>
        <source>[OutChannel%1]</source>
        <translation>[OutChannel%1]</translation>
    </message>
</context>
<context>
    <name>HistoryPage</name>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>IR</source>
        <translation>IR</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>%1  %2 output %3: input %4 -&gt; %5  (%6)</source>
        <translation>%1  %2 output %3: input %4 -&gt; %5  (%6)</translation>
    </message>
    <message>
        <source>from here</source>
        <translation>from here</translation>
    </message>
    <message>
        <source>reported by the device</source>
        <translation>reported by the device</translation>
    </message>
</context>
<context>
    <name>LoginDialog</name>
    <message>
        <source>Orvex系列视频切换软件</source>
        <translation>ORVEX SERIES VIDEO SWITCHING SOFTWARE</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Login</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>UserName</translation>
    </message>
    <message>
        <source>PassWord</source>
        <translation>PassWord</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Remember me</translation>
    </message>
    <message>
        <source>Connet Fail!</source>
        <translation>Connet Fail!</translation>
    </message>
    <message>
        <source>username or password error!</source>
        <translation>username or password error!</translation>
    </message>
    <message>
        <source>connect successful but software error!</source>
        <translation>connect successful but software error!</translation>
    </message>
    <message>
        <source>connect fail!</source>
        <translation>connect fail!</translation>
    </message>
    <message>
        <source>account database unreadable!</source>
        <translation>account database unreadable!</translation>
    </message>
</context>
<context>
    <name>LoginSettingDialog</name>
    <message>
        <source>设备连接设置</source>
        <translation>Device Connection</translation>
    </message>
    <message>
        <source>Device IP:</source>
        <translation>Device IP:</translation>
    </message>
    <message>
        <source>Port:</source>
        <translation>Port:</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>MessageDistance</name>
    <message>
        <source>传输文件过程网络发生错误！请重新上传</source>
        <translation>An error occurred during the transmission of files, please re-upload</translation>
    </message>
    <message>
        <source>NetWork Error</source>
        <translation>NetWork Error</translation>
    </message>
    <message>
        <source>传输文件端口连接发生错误！</source>
        <translation>An error occurred in the connection of the file transfer port</translation>
    </message>
</context>
<context>
    <name>MsgDlg</name>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>NetworkPage</name>
    <message>
        <source>NetWork Setting</source>
        <translation>NetWork Setting</translation>
    </message>
    <message>
        <source>Ip</source>
        <translation>Ip</translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation>Gateway</translation>
    </message>
    <message>
        <source>Subnet</source>
        <translation>Subnet</translation>
    </message>
    <message>
        <source>Mac</source>
        <translation>Mac</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <translation>Factory Reset</translation>
    </message>
    <message>
        <source>confirm</source>
        <translation>confirm</translation>
    </message>
</context>
<context>
    <name>OtherPage</name>
    <message>
        <source>Caption</source>
        <translation>Caption</translation>
    </message>
    <message>
        <source>CaptionSetting</source>
        <translation>CaptionSetting</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>Buzzer</source>
        <translation>Buzzer</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Setting</translation>
    </message>
    <message>
        <source>免登录</source>
        <translation>No login required</translation>
    </message>
    <message>
        <source>UserManager Setting</source>
        <translation>UserManager Setting</translation>
    </message>
    <message>
        <source>Usermanage</source>
        <translation>Usermanage</translation>
    </message>
    <message>
        <source>Connect Setting</source>
        <translation>Connect Setting</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Connecting</translation>
    </message>
</context>
<context>
    <name>PresetsPage</name>
    <message>
        <source>Slot %1 holds "%2". Replace it with the current routing?</source>
        <translation>Slot %1 holds "%2". Replace it with the current routing?</translation>
    </message>
    <message>
        <source>Save preset</source>
        <translation>Save preset</translation>
    </message>
    <message>
        <source>The device is not connected; slot %1 was not saved.</source>
        <translation>The device is not connected; slot %1 was not saved.</translation>
    </message>
    <message>
        <source>Preset %1</source>
        <translation>Preset %1</translation>
    </message>
    <message>
        <source>The routing was saved in slot %1 on the device, but its name could not be saved in %2.</source>
        <translation>The routing was saved in slot %1 on the device, but its name could not be saved in %2.</translation>
    </message>
    <message>
        <source>Database Error</source>
        <translation>Database Error</translation>
    </message>
    <message>
        <source>The device is not connected; slot %1 was not recalled.</source>
        <translation>The device is not connected; slot %1 was not recalled.</translation>
    </message>
    <message>
        <source>Recall preset</source>
        <translation>Recall preset</translation>
    </message>
    <message>
        <source>The new name could not be saved in %1; the old name is kept.</source>
        <translation>The new name could not be saved in %1; the old name is kept.</translation>
    </message>
    <message>
        <source>The name could not be removed from %1.</source>
        <translation>The name could not be removed from %1.</translation>
    </message>
    <message>
        <source>The device keeps the routing of each slot; the names are kept on this computer.</source>
        <translation>The device keeps the routing of each slot; the names are kept on this computer.</translation>
    </message>
    <message>
        <source>Slot</source>
        <translation>Slot</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Preset name</source>
        <translation>Preset name</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Recall</source>
        <translation>Recall</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>Presets</translation>
    </message>
</context>
<context>
    <name>RenameDialog</name>
    <message>
        <source>重命名</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>新名称:</source>
        <translation>New Name:</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>cancel</translation>
    </message>
</context>
<context>
    <name>ResolutionSetDialog</name>
    <message>
        <source>Resolution</source>
        <translation>Resolution</translation>
    </message>
    <message>
        <source>[OutChannel%1]</source>
        <translation>[OutChannel%1]</translation>
    </message>
    <message>
        <source>[InChannel%1]</source>
        <translation>[InChannel%1]</translation>
    </message>
</context>
<context>
    <name>RoutingPages</name>
    <message>
        <source>Output %1 did not switch: the device shows input %2.</source>
        <translation>Output %1 did not switch: the device shows input %2.</translation>
    </message>
    <message>
        <source>Not connected: output %1 was not switched.</source>
        <translation>Not connected: output %1 was not switched.</translation>
    </message>
</context>
<context>
    <name>SettingDialog</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>SettingsPage</name>
    <message>
        <source>Reset the device at %1 to its factory settings? Its routes and settings are lost.</source>
        <translation>Reset the device at %1 to its factory settings? Its routes and settings are lost.</translation>
    </message>
    <message>
        <source>Factory reset</source>
        <translation>Factory reset</translation>
    </message>
    <message>
        <source>The device did not take the network settings; it reports %1.</source>
        <translation>The device did not take the network settings; it reports %1.</translation>
    </message>
</context>
<context>
    <name>TitleOrOsdDialog</name>
    <message>
        <source>OSD Setting</source>
        <translation>OSD Setting</translation>
    </message>
    <message>
        <source>Caption Setting</source>
        <translation>Caption Setting</translation>
    </message>
    <message>
        <source>Out%1</source>
        <translation>Out%1</translation>
    </message>
    <message>
        <source>[Input%1]</source>
        <translation>[Input%1]</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Output</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>Display</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Show</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Speed</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Direction</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Left</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Right</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>Colours</translation>
    </message>
    <message>
        <source>Text colour</source>
        <translation>Text colour</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Background</translation>
    </message>
    <message>
        <source>Content</source>
        <translation>Content</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Upload text</source>
        <translation>Upload text</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Font</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Picture</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Browse</translation>
    </message>
    <message>
        <source>Upload picture</source>
        <translation>Upload picture</translation>
    </message>
    <message>
        <source>Erase</source>
        <translation>Erase</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>请选择图片路径</source>
        <translation>Please select the image path</translation>
    </message>
    <message>
        <source>支持图片文件 (*.bmp *.png *.jpg *.jpeg *.tga *.tiff);; 所有文件(*.*);;</source>
        <translation>Supported image files (*.bmp *.png *.jpg *.jpeg *.tga *.tiff);; All files(*.*);;</translation>
    </message>
    <message>
        <source>File is empty</source>
        <translation>File is empty</translation>
    </message>
    <message>
        <source>error</source>
        <translation>error</translation>
    </message>
    <message>
        <source>台标字幕文件大小不能超过4K!</source>
        <translation>The size of the logo subtitle file cannot exceed 4KB!</translation>
    </message>
    <message>
        <source>错误</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>传输文件端口连接发生错误！</source>
        <translation>An error occurred in the connection of the file transfer port</translation>
    </message>
    <message>
        <source>NetWork Error</source>
        <translation>NetWork Error</translation>
    </message>
</context>
<context>
    <name>Usermanagerdialog</name>
    <message>
        <source>User Management</source>
        <translation>User Management</translation>
    </message>
    <message>
        <source>User List</source>
        <translation>User List</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>UserName</translation>
    </message>
    <message>
        <source>User Info</source>
        <translation>User Info</translation>
    </message>
    <message>
        <source>UserName:</source>
        <translation>UserName:</translation>
    </message>
    <message>
        <source>PassWord:</source>
        <translation>PassWord:</translation>
    </message>
    <message>
        <source>Repeat:</source>
        <translation>Repeat:</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>two password not equation!</source>
        <translation>two password not equation!</translation>
    </message>
    <message>
        <source>the change could not be saved!</source>
        <translation>the change could not be saved!</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>VolumnSettingDialog</name>
    <message>
        <source>Volume Setting [InChannel%1]</source>
        <translation>Volume Setting [InChannel%1]</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
</context>
<context>
    <name>Widget</name>
    <message>
        <source>refrensh</source>
        <translation>refrensh</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting</source>
        <translation>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected</source>
        <translation>OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected</source>
        <translation>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected</translation>
    </message>
    <message>
        <source>Signal list</source>
        <translation>Signal list</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>Joint</source>
        <translation>Joint</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>模拟音频</source>
        <translation>Analog Audio</translation>
    </message>
    <message>
        <source>Infared</source>
        <translation>Infared</translation>
    </message>
    <message>
        <source>NetWork Setting</source>
        <translation>NetWork Setting</translation>
    </message>
    <message>
        <source>OtherSetting</source>
        <translation>OtherSetting</translation>
    </message>
    <message>
        <source>About</source>
        <translation>About</translation>
    </message>
    <message>
        <source>Administrator</source>
        <translation>Administrator</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connected</source>
        <translation>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connected</translation>
    </message>
    <message>
        <source>Output %1</source>
        <translation>Output %1</translation>
    </message>
    <message>
        <source>Audio %1</source>
        <translation>Audio %1</translation>
    </message>
    <message>
        <source>音频模式</source>
        <translation>Audio Mode</translation>
    </message>
    <message>
        <source>数字音频</source>
        <translation>Digital Audio</translation>
    </message>
    <message>
        <source>Rename(F2)</source>
        <translation>Rename(F2)</translation>
    </message>
    <message>
        <source>OSD Setting</source>
        <translation>OSD Setting</translation>
    </message>
    <message>
        <source>GraphicsTest</source>
        <translation>GraphicsTest</translation>
    </message>
    <message>
        <source>Volume Setting</source>
        <translation>Volume Setting</translation>
    </message>
    <message>
        <source>Edid</source>
        <translation>Edid</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Resolution</translation>
    </message>
    <message>
        <source>Graphics Test</source>
        <translation>Graphics Test</translation>
    </message>
    <message>
        <source>清除</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>Input %1</source>
        <translation>Input %1</translation>
    </message>
    <message>
        <source>The new name could not be saved in %1; the old name is kept.</source>
        <translation>The new name could not be saved in %1; the old name is kept.</translation>
    </message>
    <message>
        <source>Database Error</source>
        <translation>Database Error</translation>
    </message>
    <message>
        <source>The database %1 is locked by another program. Accounts and port names can be neither read nor saved until it is released.</source>
        <translation>The database %1 is locked by another program. Accounts and port names can be neither read nor saved until it is released.</translation>
    </message>
    <message>
        <source>The database %1 cannot be read: it is damaged or not a database. Accounts and port names can be neither read nor saved.</source>
        <translation>The database %1 cannot be read: it is damaged or not a database. Accounts and port names can be neither read nor saved.</translation>
    </message>
    <message>
        <source>Not connected: the device was not changed.</source>
        <translation>Not connected: the device was not changed.</translation>
    </message>
    <message>
        <source>History</source>
        <translation>History</translation>
    </message>
    <message>
        <source>Not connected: nothing was undone.</source>
        <translation>Not connected: nothing was undone.</translation>
    </message>
    <message>
        <source>Nothing to undo.</source>
        <translation>Nothing to undo.</translation>
    </message>
    <message>
        <source>Not connected: the caption cannot be set.</source>
        <translation>Not connected: the caption cannot be set.</translation>
    </message>
</context>
</TS>